#include "ui/kit/reveal.h"

#include <QEvent>
#include <QGraphicsOpacityEffect>
#include <QLayout>

#include <cmath>

#include "ui/kit/focus_rest.h"
#include "ui/kit/theme.h"

namespace tralio {
namespace {

constexpr int revealTime = 150;  // milliseconds

}  // namespace

Reveal::Reveal(QWidget* content, QWidget* parent) : QWidget(parent), m_content(content) {
    content->setParent(this);
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    m_animation.setEasingCurve(QEasingCurve::OutQuad);
    connect(&m_animation, &QVariantAnimation::valueChanged, this,
        [this](const QVariant& value) { setShare(value.toReal()); });
    connect(&m_animation, &QVariantAnimation::finished, this, &Reveal::finish);
    hide();
}

void Reveal::setRevealed(bool revealed) {
    if (m_revealed == revealed)
        return;
    m_revealed = revealed;
    if (!revealed && parentWidget() != nullptr)
        restFocus(*parentWidget(), *this);
    m_animation.stop();
    const bool seen = parentWidget() != nullptr && parentWidget()->isVisible();
    const int duration = Theme::current().duration(revealTime);
    setVisible(true);
    if (duration == 0 || !seen) {
        setShare(revealed ? 1 : 0);
        finish();
        return;
    }
    m_content->setGraphicsEffect(new QGraphicsOpacityEffect(m_content));
    m_animation.setDuration(duration);
    m_animation.setStartValue(m_share);
    m_animation.setEndValue(revealed ? 1.0 : 0.0);
    m_animation.start();
}

void Reveal::setShare(qreal share) {
    m_share = share;
    if (auto* effect = qobject_cast<QGraphicsOpacityEffect*>(m_content->graphicsEffect()))
        effect->setOpacity(share);
    updateGeometry();
}

void Reveal::finish() {
    // The effect renders into a pixmap; at rest the content paints directly.
    m_content->setGraphicsEffect(nullptr);
    setVisible(m_revealed);
}

int Reveal::contentHeight(int width) const {
    if (m_content->hasHeightForWidth())
        return m_content->heightForWidth(width);
    if (m_content->layout() != nullptr && m_content->layout()->hasHeightForWidth())
        return m_content->layout()->heightForWidth(width);
    return m_content->sizeHint().height();
}

QSize Reveal::sizeHint() const {
    return {m_content->sizeHint().width(), heightForWidth(width())};
}

QSize Reveal::minimumSizeHint() const {
    return {m_content->minimumSizeHint().width(), 0};
}

int Reveal::heightForWidth(int width) const {
    return int(std::ceil(contentHeight(width) * m_share));
}

void Reveal::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    m_content->setGeometry(0, 0, width(), contentHeight(width()));
}

bool Reveal::event(QEvent* event) {
    if (event->type() == QEvent::LayoutRequest) {
        m_content->setGeometry(0, 0, width(), contentHeight(width()));
        updateGeometry();
    }
    return QWidget::event(event);
}

}  // namespace tralio
