#include "ui/kit/badge.h"

#include "hotkeys/shortcut_words.h"
#include "ui/kit/painting.h"

namespace tralio {

Badge::Badge(const BadgeStyle& style, const QString& text, QWidget* parent)
    : QWidget(parent), m_style(style), m_text(text) {
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    changed();
}

void Badge::setText(const QString& text) {
    if (m_text == text)
        return;
    m_text = text;
    changed();
}

void Badge::setStyle(const BadgeStyle& style) {
    m_style = style;
    changed();
}

void Badge::changed() {
    setAccessibleName(keysInWords(m_text));
    updateGeometry();
    update();
}

QSize Badge::sizeHint() const {
    return {textWidth(m_style.text, m_text) + 2 * m_style.padding, m_style.height};
}

QSize Badge::minimumSizeHint() const {
    return {2 * m_style.padding, m_style.height};
}

void Badge::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintFill(painter, rect(), m_style.radius, color(m_style.fill));
    paintEdge(painter, rect(), m_style.radius, 1, color(m_style.edge));
    paintText(painter, rect().adjusted(m_style.padding, 0, -m_style.padding, 0), m_style.text,
        color(m_style.color), m_text);
}

}  // namespace tralio
