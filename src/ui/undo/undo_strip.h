#pragma once

#include <QWidget>

class QShortcut;

namespace tralio {

class Button;
class Label;
class Reveal;
class UndoOffer;

/// A strip that says what was deleted, and brings it back by its button or the undo keys.
class UndoStrip final : public QWidget {
    Q_OBJECT

public:
    /// When the strip hides while it has the focus, `neighbour` gets it. Both outlive the strip.
    UndoStrip(UndoOffer& offer, QWidget& neighbour, QWidget* parent = nullptr);

protected:
    void hideEvent(QHideEvent* event) override;

private:
    void undo();
    void refresh();

    UndoOffer& m_offer;
    QWidget& m_neighbour;
    Reveal* m_reveal;
    Label* m_message;
    Button* m_undo;
    QShortcut* m_keys;
};

}  // namespace tralio
