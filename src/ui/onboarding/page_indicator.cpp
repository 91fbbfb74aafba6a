#include "ui/onboarding/page_indicator.h"

#include <algorithm>
#include <cmath>

#include "ui/kit/accessibility.h"
#include "ui/kit/painting.h"
#include "ui/kit/theme.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

constexpr int capsule = 6;  // height, and width of the other pages' capsules
constexpr int currentCapsule = 22;
constexpr int capsuleGap = 6;
constexpr int capsuleTime = 200;  // milliseconds
constexpr double restOpacity = 30;

QColor between(const QColor& one, const QColor& other, qreal share) {
    const auto mix = [share](float from, float to) { return float(from + (to - from) * share); };
    return QColor::fromRgbF(mix(one.redF(), other.redF()), mix(one.greenF(), other.greenF()),
        mix(one.blueF(), other.blueF()), mix(one.alphaF(), other.alphaF()));
}

}  // namespace

PageIndicator::PageIndicator(int pages, QWidget* parent) : QWidget(parent), m_pages(pages) {
    setFixedSize((pages - 1) * (capsule + capsuleGap) + currentCapsule, capsule);
    m_slide.setEasingCurve(QEasingCurve::InOutQuad);
    connect(&m_slide, &QVariantAnimation::valueChanged, this,
        [this](const QVariant& value) { setPosition(value.toReal()); });
    updateAccessibleName(0);
}

void PageIndicator::setCurrent(int page) {
    updateAccessibleName(page);
    announce(*this);
    m_slide.stop();
    const int duration = Theme::current().duration(capsuleTime);
    if (duration == 0 || !isVisible()) {
        setPosition(page);
        return;
    }
    m_slide.setDuration(duration);
    m_slide.setStartValue(m_position);
    m_slide.setEndValue(qreal(page));
    m_slide.start();
}

void PageIndicator::updateAccessibleName(int page) {
    setAccessibleName(u"Trang %1 trên %2"_s.arg(page + 1).arg(m_pages));
}

void PageIndicator::setPosition(qreal position) {
    m_position = position;
    update();
}

void PageIndicator::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const QColor rest = withOpacity(color(ColorRole::secondary), restOpacity);
    qreal left = 0;
    for (int page = 0; page < m_pages; ++page) {
        const qreal share = std::max(0.0, 1 - std::abs(m_position - page));
        const QRectF area(left, 0, capsule + (currentCapsule - capsule) * share, capsule);
        paintFill(painter, area, capsule / 2.0, between(rest, color(ColorRole::accentIcon), share));
        left = area.right() + capsuleGap;
    }
}

}  // namespace tralio
