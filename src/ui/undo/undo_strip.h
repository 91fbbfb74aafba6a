#pragma once

#include <QWidget>

namespace tralio {

class Button;
class Label;
class Reveal;
class UndoOffer;

/// A strip that says what was deleted and brings it back.
class UndoStrip final : public QWidget {
    Q_OBJECT

public:
    /// The keyboard goes on to `neighbour` when the strip leaves with it. Both outlive the strip.
    UndoStrip(UndoOffer& offer, QWidget& neighbour, QWidget* parent = nullptr);

private:
    void refresh();

    UndoOffer& m_offer;
    QWidget& m_neighbour;
    Reveal* m_reveal;
    Label* m_message;
    Button* m_undo;
};

}  // namespace tralio
