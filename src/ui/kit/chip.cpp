#include "ui/kit/chip.h"

#include "ui/kit/painting.h"
#include "ui/kit/theme.h"

namespace tralio {
namespace {

constexpr int chipHeight = 19;
constexpr int chipPadding = 6;
constexpr int dot = 6;
constexpr int chipGap = 4;
constexpr TextStyle titleStyle = text::smallCaption.with(Weight::medium);

}  // namespace

Chip::Chip(const QString& title, QWidget* parent) : Control(title, parent) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setLive(false);
}

void Chip::setState(State state) {
    m_state = state;
    setLive(state == State::trouble);
    setCursor(state == State::trouble ? Qt::PointingHandCursor : Qt::ArrowCursor);
}

QSize Chip::sizeHint() const {
    return {2 * chipPadding + dot + chipGap + textWidth(titleStyle, title()), chipHeight};
}

void Chip::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const bool good = m_state == State::good;
    const QRectF area = rect();
    paintFill(painter, area, radius::chip, color(ColorRole::control));
    paintStateOverlay(painter, area, radius::chip, Ground::neutral);
    if (!showsFocusRing())
        paintEdge(painter, area, radius::chip, 1, color(ColorRole::hairline));
    paintFocusRing(painter, area, radius::chip, Ground::neutral);
    paintFill(painter, QRectF(chipPadding, (area.height() - dot) / 2, dot, dot), dot / 2.0,
        color(good ? ColorRole::greenSolid : ColorRole::redSolid));
    paintText(painter, area.adjusted(chipPadding + dot + chipGap, 1, -chipPadding + 1, -1), titleStyle,
        color(good ? ColorRole::secondary : ColorRole::red), title());
}

}  // namespace tralio
