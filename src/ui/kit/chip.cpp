#include "ui/kit/chip.h"

#include "ui/kit/painting.h"
#include "ui/kit/theme.h"

namespace tralio {
namespace {

constexpr int chipHeight = 19;
constexpr int padding = 6;
constexpr int dot = 6;
constexpr int gap = 4;
constexpr TextStyle titleStyle = text::smallCaption.with(Weight::Medium);

}  // namespace

Chip::Chip(const QString& title, QWidget* parent) : Control(title, parent) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setLive(false);
}

void Chip::setState(State state) {
    m_state = state;
    setLive(state == State::Trouble);
    setCursor(state == State::Trouble ? Qt::PointingHandCursor : Qt::ArrowCursor);
}

QSize Chip::sizeHint() const {
    return {2 * padding + dot + gap + textWidth(titleStyle, title()), chipHeight};
}

void Chip::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const bool good = m_state == State::Good;
    const QRectF area = rect();
    paintFill(painter, area, radius::chip, color(ColorRole::Control));
    paintStateOverlay(painter, area, radius::chip, Ground::Neutral);
    if (!showsFocusRing())
        paintEdge(painter, area, radius::chip, 1, color(ColorRole::Hairline));
    paintFocusRing(painter, area, radius::chip, Ground::Neutral);
    paintFill(painter, QRectF(padding, (area.height() - dot) / 2, dot, dot), dot / 2.0,
        color(good ? ColorRole::GreenSolid : ColorRole::RedSolid));
    paintText(painter, area.adjusted(padding + dot + gap, 0, -padding + 1, 0), titleStyle,
        color(good ? ColorRole::Secondary : ColorRole::Red), title());
}

}  // namespace tralio
