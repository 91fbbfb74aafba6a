#include "ui/kit/keyboard_use.h"

#include <QCoreApplication>
#include <QEvent>

namespace tralio {
namespace {

class KeyboardUse final : public QObject {
public:
    bool isLast = true;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::KeyPress || event->type() == QEvent::MouseButtonPress ||
            event->type() == QEvent::TouchBegin)
            isLast = event->type() == QEvent::KeyPress;
        return QObject::eventFilter(watched, event);
    }
};

KeyboardUse& keyboardUse() {
    static KeyboardUse use;
    return use;
}

}  // namespace

void watchKeyboardUse() {
    // A filter that is installed again is moved, not doubled.
    QCoreApplication::instance()->installEventFilter(&keyboardUse());
}

bool isKeyboardFocus(Qt::FocusReason reason) {
    const bool isMove =
        reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason || reason == Qt::ShortcutFocusReason;
    return isMove && keyboardUse().isLast;
}

bool isPassingFocus(Qt::FocusReason reason) {
    return reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason;
}

}  // namespace tralio
