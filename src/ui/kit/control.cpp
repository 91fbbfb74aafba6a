#include "ui/kit/control.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QVariantAnimation>

#include <utility>

#include "hotkeys/shortcut_words.h"
#include "ui/kit/keyboard_use.h"
#include "ui/kit/painting.h"
#include "ui/kit/theme.h"

using namespace Qt::StringLiterals;

namespace tralio {
namespace {

constexpr int hoverFade = 120;  // milliseconds

}  // namespace

// QAbstractButton's text stays empty: it would read "Dán & Tralio" as a mnemonic and reserve a shortcut for
// it.
Control::Control(const QString& title, QWidget* parent) : QAbstractButton(parent), m_title(title) {
    setFocusPolicy(Qt::TabFocus);
    updateAccessibleName();
    watchKeyboardUse();
}

void Control::setTitle(const QString& title) {
    if (m_title == title)
        return;
    m_title = title;
    updateAccessibleName();
    updateGeometry();
    update();
}

void Control::setSpokenCaption(const QString& caption) {
    m_spokenCaption = caption;
    updateAccessibleName();
}

void Control::updateAccessibleName() {
    const bool both = !m_spokenCaption.isEmpty() && !m_title.isEmpty();
    setAccessibleName(m_spokenCaption + (both ? u": "_s : QString()) + keysInWords(m_title));
}

QAccessible::Role Control::spokenRole() const {
    return isCheckable() ? QAccessible::CheckBox : QAccessible::Button;
}

QAccessible::State Control::spokenState(QAccessible::State state) const {
    state.busy = m_busy;
    state.pressed = isDown();
    state.checkable = isCheckable();
    state.checked = isChecked();
    return state;
}

void Control::setBusy(bool busy) {
    if (m_busy == busy)
        return;
    m_busy = busy;
    setDown(false);
    updateGeometry();
    update();
}

void Control::setLive(bool live) {
    m_live = live;
    setFocusPolicy(live ? Qt::TabFocus : Qt::NoFocus);
    update();
}

void Control::paintStateOverlay(QPainter& painter, const QRectF& area, qreal radius, Ground ground) const {
    if (!isLive())
        return;
    const bool solid = ground == Ground::solid;
    if (isDown()) {
        paintFill(
            painter, area, radius, color(solid ? ColorRole::fillPressedOverlay : ColorRole::pressedOverlay));
    } else if (m_hover > 0) {
        QColor overlay = color(solid ? ColorRole::fillHoverOverlay : ColorRole::hoverOverlay);
        overlay.setAlphaF(float(overlay.alphaF() * m_hover));
        paintFill(painter, area, radius, overlay);
    }
}

void Control::paintFocusRing(QPainter& painter, const QRectF& area, qreal radius, Ground ground) const {
    if (!m_showsFocusRing)
        return;
    if (ground == Ground::solid)
        paintEdge(painter, area.adjusted(2, 2, -2, -2), radius - 2, 2, color(ColorRole::focusOnFill));
    else
        paintEdge(painter, area, radius, 2, color(ColorRole::accentIcon));
}

void Control::enterEvent(QEnterEvent* event) {
    delete m_fade;
    m_fade = nullptr;
    setHover(1);
    QAbstractButton::enterEvent(event);
}

void Control::leaveEvent(QEvent* event) {
    delete m_fade;
    m_fade = nullptr;
    const int duration = Theme::current().duration(hoverFade);
    if (duration == 0 || !isVisible()) {
        setHover(0);
    } else {
        m_fade = new QVariantAnimation(this);
        m_fade->setDuration(duration);
        m_fade->setEasingCurve(QEasingCurve::OutQuad);
        m_fade->setStartValue(m_hover);
        m_fade->setEndValue(0.0);
        connect(m_fade, &QVariantAnimation::valueChanged, this,
            [this](const QVariant& value) { setHover(value.toReal()); });
        m_fade->start();
    }
    QAbstractButton::leaveEvent(event);
}

void Control::setHover(qreal hover) {
    m_hover = hover;
    update();
}

void Control::focusInEvent(QFocusEvent* event) {
    if (!isPassingFocus(event->reason()))
        m_showsFocusRing = isKeyboardFocus(event->reason());
    QAbstractButton::focusInEvent(event);
}

void Control::focusOutEvent(QFocusEvent* event) {
    if (!isPassingFocus(event->reason()))
        m_showsFocusRing = false;
    QAbstractButton::focusOutEvent(event);
}

void Control::keyPressEvent(QKeyEvent* event) {
    if (!isLive()) {
        event->ignore();
        return;
    }
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if ((isReturn || event->key() == Qt::Key_Space) && isRepeat(*event))
        return;
    if (isReturn)
        click();
    else
        QAbstractButton::keyPressEvent(event);
}

// WORKAROUND: Qt 6.4 also moves the focus on when the control that has it is disabled or hidden. A second
// press of the same key would then trigger another control.
bool Control::focusNextPrevChild(bool next) {
    if (!isEnabled())
        return true;  // keeps the focus, ignores keys, and works again once it is enabled
    return QAbstractButton::focusNextPrevChild(next && isVisible());
}

bool Control::hitButton(const QPoint& position) const {
    return isLive() && QAbstractButton::hitButton(position);
}

bool Control::event(QEvent* event) {
    // Given up while the window was inactive, the focus goes without an event.
    if (event->type() == QEvent::WindowActivate && window()->focusWidget() != this &&
        std::exchange(m_showsFocusRing, false))
        update();
    return QAbstractButton::event(event);
}

void Control::changeEvent(QEvent* event) {
    if (event->type() == QEvent::EnabledChange && !isEnabled())
        setHover(0);
    QAbstractButton::changeEvent(event);
}

}  // namespace tralio
