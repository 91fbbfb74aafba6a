#include "ui/kit/keyboard_use.h"

#include <QCoreApplication>
#include <QKeyEvent>

namespace tralio {
namespace {

class KeyboardUse final : public QObject {
public:
    bool isLast = true;

    [[nodiscard]] bool isRepeat(const QKeyEvent& press) const {
        if (press.isAutoRepeat())
            return true;
        // Qt sends copies of the window's event on, and these lack the time stamp.
        const quint64 time = press.timestamp();
        const quint32 key = press.nativeScanCode();
        const bool isSame = time == 0 ? key == m_repeatedKey : key == m_releasedKey && time == m_releasedAt;
        return key != 0 && isSame;
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::KeyPress || event->type() == QEvent::MouseButtonPress ||
            event->type() == QEvent::TouchBegin)
            isLast = event->type() == QEvent::KeyPress;
        // WORKAROUND: Qt's bridge to AT-SPI installs its filter anew whenever somebody begins or ceases to
        // listen there. It swallows keys and sends copies without time stamp later, so that this filter has
        // to come before it. It lets through what precedes a key press, and the click that begins a
        // recording.
        if (event->type() == QEvent::ShortcutOverride || event->type() == QEvent::MouseButtonPress)
            watchKeyboardUse();
        const bool isPress = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
        if (isPress || event->type() == QEvent::KeyRelease)
            remember(static_cast<const QKeyEvent&>(*event), isPress);
        return QObject::eventFilter(watched, event);
    }

private:
    void remember(const QKeyEvent& event, bool isPress) {
        if (event.timestamp() == 0)
            return;
        if (isPress) {
            m_repeatedKey = isRepeat(event) ? event.nativeScanCode() : 0;
        } else {
            m_releasedKey = event.nativeScanCode();
            m_releasedAt = event.timestamp();
        }
    }

    // Keys are native scan codes; times are on the window system's clock.
    quint32 m_releasedKey = 0;
    quint64 m_releasedAt = 0;
    quint32 m_repeatedKey = 0;  ///< 0 unless the last press was a repeat
};

KeyboardUse& keyboardUse() {
    static KeyboardUse use;
    return use;
}

}  // namespace

void watchKeyboardUse() {
    // Installing a filter again moves it and does not double it.
    QCoreApplication::instance()->installEventFilter(&keyboardUse());
}

bool isKeyboardFocus(Qt::FocusReason reason) {
    const bool isMove =
        reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason || reason == Qt::ShortcutFocusReason;
    return isMove && keyboardUse().isLast;
}

bool isRepeat(const QKeyEvent& press) {
    // WORKAROUND: Qt 6.4 does not recognise a key repeat if it has read only the release from the X server
    // when it looks, and reports a real release and press. The server gives both the same time stamp, which
    // two real key strokes never share.
    return keyboardUse().isRepeat(press);
}

bool isPassingFocus(Qt::FocusReason reason) {
    return reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason;
}

}  // namespace tralio
