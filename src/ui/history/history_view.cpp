#include "ui/history/history_view.h"

#include <QKeyEvent>
#include <QScrollBar>

#include <algorithm>
#include <utility>

#include "common/on_change.h"
#include "ui/history/history_row.h"
#include "ui/history/history_state.h"
#include "ui/kit/button.h"
#include "ui/kit/focus_rest.h"
#include "ui/kit/icon_view.h"
#include "ui/kit/label.h"
#include "ui/kit/scroll_panel.h"
#include "ui/kit/stack.h"
#include "ui/kit/surface.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

constexpr int listPadding = 10;  // above the first row and below the last one

constexpr ButtonStyle clearStyle = [] {
    ButtonStyle style = button::word;
    style.gap = 4;
    return style;
}();

}  // namespace

HistoryView::HistoryView(HistoryState& state, QWidget* parent) : QWidget(parent), m_state(state) {
    filled(this, column({}, {titleRow(), new Divider, {emptyState(), {}, 1}, {list(), {}, 1}}));
    onAnyChange(
        m_state, this, [this] { refresh(); });
    onAnyChange(m_state.historyStore(), this, [this] { refresh(); });
    refresh();
}

QWidget* HistoryView::titleRow() {
    m_title = new Label({}, text::headline);
    m_clear = new Button(clearStyle, {.icon = u"trash"_s, .title = u"Xóa tất cả"_s});
    m_clear->setColor(ColorRole::red);
    connect(m_clear, &Button::clicked, this, [this] { m_state.clear(); });
    auto* bar = filled(
        new QWidget, row({.padding = {14, 0, 14 - clearStyle.padding, 0}}, {m_title, Stretch{}, m_clear}));
    bar->setFixedHeight(40);
    return bar;
}

QWidget* HistoryView::emptyState() {
    auto* icon = new IconView({u"clock.arrow.circlepath"_s, 36}, ColorRole::secondaryFaint);
    auto* line = new Label(u"Chưa có lịch sử dịch"_s, text::menu, ColorRole::secondary);
    auto* explanation = new Label(
        u"Các câu hoặc đoạn văn bạn dịch sẽ xuất hiện tại đây."_s, text::caption, ColorRole::placeholder);
    explanation->setWraps();
    explanation->setAlignment(Qt::AlignHCenter);
    m_empty = filled(new QWidget,
        column({.spacing = 12, .padding = {16, 16, 16, 16}},
            {
                Stretch{},
                {icon, Qt::AlignHCenter},
                {line, Qt::AlignHCenter},
                explanation,
                Stretch{},
            }));
    return m_empty;
}

QWidget* HistoryView::list() {
    m_rowLayout = column({.spacing = 8, .padding = {14, listPadding, 14, listPadding}}, {Stretch{}});
    m_scroll = new ScrollPanel(filled(new QWidget, m_rowLayout));
    return m_scroll;
}

void HistoryView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    refresh();  // the date may have changed: times of today show no date
}

void HistoryView::refresh() {
    const QList<TranslationItem>& items = m_state.historyStore().items();
    m_title->setText(u"Lịch sử bản dịch (%1)"_s.arg(items.size()));
    if (items.isEmpty()) {
        restFocus(*this, *m_clear);
        restFocus(*this, *m_scroll);
    }
    m_clear->setVisible(!items.isEmpty());
    refreshRows();
    m_empty->setVisible(items.isEmpty());
    m_scroll->setVisible(!items.isEmpty());
    if (!m_rows.isEmpty())
        wakeFocus(*this, *m_rows.first());
}

void HistoryView::refreshRows() {
    const QList<TranslationItem>& items = m_state.historyStore().items();
    const qsizetype focused = focusedRow();
    QList<HistoryRow*> spare = std::exchange(m_rows, {});
    HistoryRow* const focusedBefore = focused < 0 ? nullptr : spare[focused];
    for (const TranslationItem& item : items) {
        const auto found =
            std::ranges::find_if(spare, [&item](const HistoryRow* row) { return row->item() == item; });
        HistoryRow* row = found != spare.end() ? spare.takeAt(found - spare.begin()) : newRow(item);
        row->setDate(m_state.formatDate(item.date()));
        row->setCopied(m_state.copiedId() == item.id);
        m_rows.append(row);
    }

    // If the focused row is removed, the row at its position gets the focus.
    HistoryRow* const heir = spare.contains(focusedBefore) && !m_rows.isEmpty()
        ? m_rows[std::min(focused, m_rows.size() - 1)]
        : nullptr;
    if (heir != nullptr)
        heir->takeFocusFrom(*focusedBefore);
    for (HistoryRow* row : std::as_const(spare)) {
        row->hide();
        m_rowLayout->removeWidget(row);
        row->deleteLater();
    }
    const int scrolled = m_scroll->verticalScrollBar()->value();
    const auto read = std::ranges::find_if(m_rows, [scrolled](const HistoryRow* row) {
        return row->isVisible() && row->geometry().bottom() >= scrolled;
    });
    const int place = read == m_rows.end() ? 0 : (*read)->y();
    placeRows();
    if (heir == nullptr && (read == m_rows.end() || scrolled == 0))
        return;
    m_scroll->layOut();
    if (heir != nullptr)
        m_scroll->ensureWidgetVisible(heir, 0, listPadding);
    else  // new entries above must not move what the user reads
        m_scroll->verticalScrollBar()->setValue(scrolled + (*read)->y() - place);
}

void HistoryView::placeRows() {
    for (int position = 0; position < m_rows.size(); ++position) {
        if (m_rowLayout->indexOf(m_rows[position]) != position)
            m_rowLayout->insertWidget(position, m_rows[position]);
        m_rows[position]->show();  // the layout would show it only with the next event
    }
}

HistoryRow* HistoryView::newRow(const TranslationItem& item) {
    auto* row = new HistoryRow(item, m_state.formatDate(item.date()));
    connect(
        row, &HistoryRow::clicked, this, [this, row] { m_state.select(row->item()); });
    connect(
        row, &HistoryRow::copyRequested, this, [this, row] { m_state.copyToClipboard(row->item()); });
    connect(row, &HistoryRow::removeRequested, this, [this, row] { m_state.remove(row->item()); });
    return row;
}

void HistoryView::keyPressEvent(QKeyEvent* event) {
    const int step = event->key() == Qt::Key_Up ? -1 : event->key() == Qt::Key_Down ? 1 : 0;
    const qsizetype focused = focusedRow();
    if (step == 0 || focused < 0) {
        QWidget::keyPressEvent(event);
        return;
    }
    HistoryRow* row = m_rows[std::clamp<qsizetype>(focused + step, 0, m_rows.size() - 1)];
    row->setFocus(Qt::TabFocusReason);
    m_scroll->ensureWidgetVisible(row, 0, listPadding);
}

qsizetype HistoryView::focusedRow() const {
    const QWidget* focus = window()->focusWidget();
    const auto found = std::ranges::find_if(m_rows, [focus](const HistoryRow* row) {
        return focus != nullptr && (row == focus || row->isAncestorOf(focus));
    });
    return found == m_rows.end() ? -1 : found - m_rows.begin();
}

}  // namespace tralio
