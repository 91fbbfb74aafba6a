#include "ui/kit/switch.h"

#include "ui/kit/painting.h"
#include "ui/kit/theme.h"

namespace tralio {
namespace {

constexpr QSize track{30, 18};
constexpr int knob = 14;
constexpr int inset = 2;
constexpr int ringRoom = 3;      // the focus ring is 1 px outside the track
constexpr int switchTime = 120;  // milliseconds

}  // namespace

Switch::Switch(QWidget* parent) : Control({}, parent) {
    setCheckable(true);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    m_slide.setDuration(switchTime);
    m_slide.setEasingCurve(QEasingCurve::OutQuad);
    connect(&m_slide, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
        m_knob = value.toReal();
        update();
    });
    connect(this, &Control::toggled, this, [this](bool on) {
        m_slide.stop();
        m_slide.setStartValue(m_knob);
        m_slide.setEndValue(on ? 1.0 : 0.0);
        m_slide.setDuration(isVisible() ? Theme::current().duration(switchTime) : 0);
        m_slide.start();
    });
}

QSize Switch::sizeHint() const {
    return track.grownBy({ringRoom, ringRoom, ringRoom, ringRoom});
}

void Switch::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (!isEnabled())
        painter.setOpacity(0.4);
    const QRectF area = QRectF(QPointF(), track)
                            .translated((width() - track.width()) / 2.0, (height() - track.height()) / 2.0);
    const Ground ground = isChecked() ? Ground::solid : Ground::neutral;
    const qreal round = area.height() / 2;
    paintFill(painter, area, round, color(isChecked() ? ColorRole::accentFill : ColorRole::switchOff));
    paintStateOverlay(painter, area, round, ground);
    const qreal left = area.left() + inset + m_knob * (track.width() - knob - 2 * inset);
    paintFill(painter, QRectF(left, area.top() + inset, knob, knob), knob / 2.0, color(ColorRole::onFill));
    if (showsFocusRing()) {
        paintEdge(painter, area.adjusted(-ringRoom, -ringRoom, ringRoom, ringRoom), round + ringRoom, 2,
            color(ColorRole::accentIcon));
    }
}

}  // namespace tralio
