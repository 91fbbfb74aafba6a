#pragma once

#include <QList>
#include <QWidget>

class QBoxLayout;

namespace tralio {

class Button;
class HistoryRow;
class HistoryState;
class Label;
class ScrollPanel;
struct TranslationItem;

/// The history panel: the past translations, newest first. Shows what its state and the store say; keeps
/// nothing of its own, except that a row stays one widget for as long as its entry is there, and with it the
/// scroll position, the keyboard focus and the hover.
class HistoryView final : public QWidget {
    Q_OBJECT

public:
    /// `state` outlives the view.
    explicit HistoryView(HistoryState& state, QWidget* parent = nullptr);

protected:
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QWidget* titleRow();
    QWidget* emptyState();
    QWidget* list();

    void refresh();
    void refreshRows();
    /// Puts the rows into the layout, and into the order of the Tab key, where they are not yet.
    void placeRows();
    HistoryRow* newRow(const TranslationItem& item);
    /// The position of the row that has the keyboard focus, itself or on one of its buttons; -1 if none.
    [[nodiscard]] qsizetype focusedRow() const;

    HistoryState& m_state;
    Label* m_title;
    Button* m_clear;
    QWidget* m_empty;
    ScrollPanel* m_scroll;
    QBoxLayout* m_rowLayout;
    QList<HistoryRow*> m_rows;
};

}  // namespace tralio
