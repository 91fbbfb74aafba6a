#include "ui/history/history_row.h"

#include <QKeyEvent>
#include <QPainter>

#include <utility>

#include "common/excerpt.h"
#include "ui/kit/badge.h"
#include "ui/kit/button.h"
#include "ui/kit/keyboard_use.h"
#include "ui/kit/label.h"
#include "ui/kit/painting.h"
#include "ui/kit/stack.h"
#include "ui/kit/tooltip.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

constexpr ButtonStyle copyStyle = [] {
    ButtonStyle style = button::close;
    style.iconSize = 11;
    return style;
}();

QLayout* textOf(const QString& text, const TextStyle& style, ColorRole role, int lines) {
    auto* label = new Label(text, style, role);
    label->setMaximumLines(lines);
    return row({.padding = {0, 0, 3, 0}}, {label});
}

}  // namespace

HistoryRow::HistoryRow(const TranslationItem& item, const QString& date, QWidget* parent)
    : Control({}, parent), m_item(item) {
    // A button's own policy would keep the row as wide as its longest text.
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    setCursor(Qt::PointingHandCursor);
    setSpokenCaption(u"%1, dịch từ %2 sang %3: %4"_s.arg(
        excerpt(item.sourceText), item.sourceLang, item.targetLang, excerpt(item.translatedText)));
    // The buttons reach beyond the line of the badge and to the right of the texts by their padding, so that
    // what they show stands level and ends with those.
    filled(this,
        column({.padding = {8, 7, 5, 8}},
            {
                header(date),
                Gap{5},
                textOf(item.sourceText, text::caption, ColorRole::text, 2),
                Gap{6},
                textOf(item.translatedText, text::caption.with(Weight::medium), ColorRole::accentText, 3),
            }));
}

QLayout* HistoryRow::header(const QString& date) {
    auto* languages =
        new Badge(badge::language, m_item.sourceLang.toUpper() + u" ➔ "_s + m_item.targetLang.toUpper());
    auto* tone = new Label(m_item.tone, text::smallCaption, ColorRole::secondary);
    m_date = new Label(date, text::smallCaption, ColorRole::secondary);
    m_date->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);  // long names of languages give way to it
    m_copy = new Button(copyStyle, {.icon = u"doc.on.doc"_s});
    connect(m_copy, &Button::clicked, this, &HistoryRow::copyRequested);
    m_remove = new Button(button::close, {.icon = u"xmark"_s});
    setTooltip(m_remove, u"Xóa"_s);
    connect(m_remove, &Button::clicked, this, &HistoryRow::removeRequested);
    for (Button* button : {m_copy, m_remove}) {
        button->setCursor(Qt::ArrowCursor);
        button->setAccessibleDescription(excerpt(m_item.sourceText));  // every entry has such a button
    }

    return row({.spacing = 8}, {languages, tone, Stretch{}, m_date, row({.spacing = 2}, {m_copy, m_remove})});
}

QSize HistoryRow::sizeHint() const {
    // The list gives the width. How wide the texts would like to be, and how high they then were, costs as
    // much to find out as how they stand.
    return minimumSizeHint();
}

void HistoryRow::takeFocusFrom(const HistoryRow& other) {
    const QWidget* focused = window()->focusWidget();
    QWidget* heir = focused == other.m_remove ? static_cast<QWidget*>(m_remove)
        : focused == other.m_copy             ? static_cast<QWidget*>(m_copy)
                                              : this;
    heir->setFocus(Qt::TabFocusReason);
}

void HistoryRow::setDate(const QString& date) {
    m_date->setText(date);
}

void HistoryRow::setCopied(bool copied) {
    if (std::exchange(m_copied, copied) == copied)
        return;
    m_copy->setIconName(copied ? u"checkmark"_s : u"doc.on.doc"_s);
    m_copy->setColor(copied ? ColorRole::green : ColorRole::secondary);
    setTooltip(m_copy, copied ? u"Đã chép!"_s : u"Sao chép"_s);
}

void HistoryRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QRectF area = rect();
    paintFill(painter, area, radius::control, color(ColorRole::surface1));
    QColor hovered = color(ColorRole::control);
    hovered.setAlphaF(float(hover()));
    paintFill(painter, area, radius::control, hovered);
    if (isDown())
        paintStateOverlay(painter, area, radius::control, Ground::neutral);
    if (!showsFocusRing())
        paintEdge(painter, area, radius::control, 1, color(ColorRole::hairline));
    paintFocusRing(painter, area, radius::control, Ground::neutral);
}

void HistoryRow::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Delete:
            if (!isRepeat(*event))  // held down, it would empty the list
                Q_EMIT removeRequested();
            break;
        case Qt::Key_Up:
        case Qt::Key_Down:
            event->ignore();
            break;
        default:
            Control::keyPressEvent(event);
    }
}

}  // namespace tralio
