#include "ui/kit/key_cap.h"

#include <QPainterPath>

#include "hotkeys/shortcut_words.h"
#include "ui/kit/painting.h"
#include "ui/kit/theme.h"
#include "ui/kit/tooltip.h"

namespace tralio {
namespace {

constexpr TextStyle capText = text::caption.with(Weight::semibold);
constexpr QMargins capPadding{8, 3, 8, 4};
constexpr int foot = 2;

/// The visible lower side of the cap.
QPainterPath footOf(const QRectF& cap) {
    QPainterPath whole;
    whole.addRoundedRect(cap, radius::small, radius::small);
    return whole - whole.translated(0, -foot);
}

}  // namespace

KeyCap::KeyCap(const QString& text, QWidget* parent) : QWidget(parent), m_text(text) {
    setFixedSize(QSize(textWidth(capText, text), capText.line).grownBy(capPadding));
    setAccessibleName(keysInWords(text));
    setTooltip(this, shortcutsInWords(text));
}

void KeyCap::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintFill(painter, rect(), radius::small, color(ColorRole::control));
    painter.fillPath(footOf(rect()), color(ColorRole::keyCapFoot));
    paintEdge(painter, rect(), radius::small, 1, color(ColorRole::border25));
    paintText(painter, rect().marginsRemoved(capPadding), capText, color(ColorRole::text), m_text);
}

}  // namespace tralio
