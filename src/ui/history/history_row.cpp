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
    // With a button's own size policy the longest text would set the width of the row.
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    setCursor(Qt::PointingHandCursor);
    setSpokenCaption(u"%1, dịch từ %2 sang %3: %4"_s.arg(
        excerpt(item.sourceText), item.sourceLang, item.targetLang, excerpt(item.translatedText)));
    // The padding of the buttons reaches above and below the line of the badge, and beyond the right edge of
    // the texts, so that their icons are level and flush with those.
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
    // Long language names are shortened instead.
    m_date->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    m_copy = new Button(copyStyle, {.icon = u"doc.on.doc"_s});
    connect(m_copy, &Button::clicked, this, &HistoryRow::copyRequested);
    m_remove = new Button(button::close, {.icon = u"xmark"_s});
    setTooltip(m_remove, u"Xóa"_s);
    connect(m_remove, &Button::clicked, this, &HistoryRow::removeRequested);
    for (Button* button : {m_copy, m_remove}) {
        button->setCursor(Qt::ArrowCursor);
        // Every entry has such a button: says which entry this one is for.
        button->setAccessibleDescription(excerpt(m_item.sourceText));
    }

    return row({.spacing = 8}, {languages, tone, Stretch{}, m_date, row({.spacing = 2}, {m_copy, m_remove})});
}

QSize HistoryRow::sizeHint() const {
    // The list sets the width. The texts' preferred width, and their height at that, would double the cost of
    // the layout.
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
            if (!isRepeat(*event))  // a held key would empty the list
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
