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

/// The history panel: past translations, newest first. Shows its state and the store. Each entry keeps its
/// widget while it exists, and so scroll position, focus and hover survive changes.
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
    /// Adds rows to the layout, and to the Tab order, that are not in it yet.
    void placeRows();
    HistoryRow* newRow(const TranslationItem& item);
    /// The index of the row that has the focus, or whose button has it; -1 if none.
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
