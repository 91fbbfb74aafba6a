#include "ui/kit/focus_rest.h"

#include "ui/kit/control.h"

namespace tralio {
namespace {

constexpr const char* ringProperty = "tralioRestingRing";

}  // namespace

bool restFocus(QWidget& place, const QWidget& leaving) {
    QWidget* focused = leaving.window()->focusWidget();
    if (focused == nullptr || !(focused == &leaving || leaving.isAncestorOf(focused)))
        return false;
    const auto* control = qobject_cast<Control*>(focused);
    place.setProperty(ringProperty, control != nullptr && control->showsFocusRing());
    place.setFocus(Qt::OtherFocusReason);
    return true;
}

void wakeFocus(QWidget& place, QWidget& part) {
    const QVariant ring = place.property(ringProperty);
    if (!ring.isValid() || place.window()->focusWidget() != &place)
        return;
    part.setFocus(ring.toBool() ? Qt::TabFocusReason : Qt::OtherFocusReason);
    place.setProperty(ringProperty, QVariant());
}

}  // namespace tralio
