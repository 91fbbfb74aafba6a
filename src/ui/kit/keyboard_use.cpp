#include "ui/kit/keyboard_use.h"

#include <QCoreApplication>
#include <QKeyEvent>

namespace tralio {
namespace {

class KeyboardUse final : public QObject {
public:
    bool isLast = true;
    quint32 releasedKey = 0;  ///< by its native scan code
    quint64 releasedAt = 0;   ///< on the window system's clock, where it gives its time

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::KeyPress || event->type() == QEvent::MouseButtonPress ||
            event->type() == QEvent::TouchBegin)
            isLast = event->type() == QEvent::KeyPress;
        if (event->type() == QEvent::KeyRelease) {
            const auto& release = static_cast<const QKeyEvent&>(*event);
            releasedKey = release.nativeScanCode();
            releasedAt = release.timestamp();
        }
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

bool isRepeat(const QKeyEvent& press) {
    // WORKAROUND: Qt 6.4 takes the release and the press of a repeat for a hand's when it has read the first
    // from the X server and not yet the second. The server gives both the same time, to which no hand comes.
    const KeyboardUse& use = keyboardUse();
    return press.isAutoRepeat() ||
        (use.releasedKey != 0 && use.releasedAt != 0 && press.timestamp() == use.releasedAt &&
            press.nativeScanCode() == use.releasedKey);
}

bool isPassingFocus(Qt::FocusReason reason) {
    return reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason;
}

}  // namespace tralio
