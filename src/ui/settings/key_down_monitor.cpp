#include "ui/settings/key_down_monitor.h"

#include <QGuiApplication>
#include <QInputMethodQueryEvent>
#include <QKeyEvent>

#include <utility>

namespace tralio {
namespace {

bool isModifier(int key) {
    switch (key) {
        case Qt::Key_Shift:
        case Qt::Key_Control:
        case Qt::Key_Meta:
        case Qt::Key_Alt:
        case Qt::Key_AltGr:
        case Qt::Key_CapsLock:
        case Qt::Key_NumLock:
        case Qt::Key_ScrollLock:
        case Qt::Key_Super_L:
        case Qt::Key_Super_R:
        case Qt::Key_Hyper_L:
        case Qt::Key_Hyper_R:
        case Qt::Key_Mode_switch:
            return true;
        default:
            return false;
    }
}

/// Where a keyboard has its modifiers, and Caps Lock. With Alt held, Shift may stand for a change of the
/// layout, and then has no name that says modifier.
bool isModifierPosition(KeyCode key) {
    return key >= KeyCode::rightCommand && key <= KeyCode::rightControl;
}

Modifiers modifiersOf(Qt::KeyboardModifiers held) {
    Modifiers modifiers;
    modifiers.setFlag(Modifier::control, held.testFlag(Qt::ControlModifier));
    modifiers.setFlag(Modifier::option, held.testFlag(Qt::AltModifier));
    modifiers.setFlag(Modifier::shift, held.testFlag(Qt::ShiftModifier));
    modifiers.setFlag(Modifier::command, held.testFlag(Qt::MetaModifier));
    return modifiers;
}

/// Swallows the repeats of a key until it is pressed anew, and goes then.
class HeldKey final : public QObject {
public:
    /// `releasedAt` is 0 for a key that has not been released.
    HeldKey(quint32 scanCode, quint64 releasedAt)
        : QObject(QCoreApplication::instance()), m_scanCode(scanCode), m_releasedAt(releasedAt) {
        parent()->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease ||
            event->type() == QEvent::ShortcutOverride;
        if (!isKey)
            return QObject::eventFilter(watched, event);
        const auto& key = static_cast<const QKeyEvent&>(*event);
        if (key.nativeScanCode() != m_scanCode)
            return QObject::eventFilter(watched, event);
        if (event->type() == QEvent::KeyRelease && !key.isAutoRepeat())
            m_releasedAt = key.timestamp();
        if (event->type() == QEvent::KeyRelease || isRepeat(key)) {
            event->accept();
            return true;
        }
        parent()->removeEventFilter(this);
        deleteLater();
        return false;
    }

private:
    /// WORKAROUND: Qt 6.4 takes the release and the press of a repeat for a hand's when it has read the first
    /// and not yet the second. A server gives both the same time, to which no hand comes.
    [[nodiscard]] bool isRepeat(const QKeyEvent& press) const {
        return press.isAutoRepeat() || (m_releasedAt != 0 && press.timestamp() == m_releasedAt);
    }

    quint32 m_scanCode;
    quint64 m_releasedAt;  ///< on the window system's clock
};

/// It ends by itself.
void swallowRepeats(quint32 scanCode, quint64 releasedAt) {
    new HeldKey(scanCode, releasedAt);
}

}  // namespace

KeyDownMonitor::KeyDownMonitor(KeyCodes keyCodes, Handler handler, QObject* parent)
    : QObject(parent), m_keyCodes(std::move(keyCodes)), m_handler(std::move(handler)) {
    QCoreApplication::instance()->installEventFilter(this);
    QGuiApplication::inputMethod()->commit();  // what the user has begun to write
    QGuiApplication::inputMethod()->update(Qt::ImEnabled);
}

KeyDownMonitor::~KeyDownMonitor() {
    QCoreApplication::instance()->removeEventFilter(this);
    QGuiApplication::inputMethod()->update(Qt::ImEnabled);
    if (m_swallowed)
        swallowRepeats(*m_swallowed, m_releasedAt);
}

std::optional<KeyCombination> KeyDownMonitor::keyDown(const QKeyEvent& event) const {
    if (isModifier(event.key()))
        return std::nullopt;
    // A user who has moved Escape to another position means the key that closes things, wherever it is.
    const auto keyCode = event.key() == Qt::Key_Escape ? KeyCode::escape : m_keyCodes(event.nativeScanCode());
    const bool hasName = event.key() != 0 && event.key() != Qt::Key_unknown;
    if (!keyCode || (!hasName && isModifierPosition(*keyCode)))
        return std::nullopt;
    return KeyCombination{*keyCode, modifiersOf(event.modifiers())};
}

bool KeyDownMonitor::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::InputMethodQuery) {
        // An input method would take keys first: an accent, with whatever modifiers, to wait for its letter.
        auto& query = static_cast<QInputMethodQueryEvent&>(*event);
        if (query.queries() & Qt::ImEnabled) {
            query.setValue(Qt::ImEnabled, false);
            query.accept();
            return true;
        }
    }
    if (event->type() == QEvent::ShortcutOverride) {
        // The toolkit asks first whether the key is a shortcut of the window: none is, for now.
        event->accept();
        return true;
    }
    if (event->type() == QEvent::KeyPress) {
        const auto& press = static_cast<const QKeyEvent&>(*event);
        const auto key = keyDown(press);
        if (key && m_handler(*key)) {
            m_swallowed = press.nativeScanCode();
            m_releasedAt = 0;
            event->accept();
            return true;
        }
    } else if (event->type() == QEvent::KeyRelease) {
        const auto& release = static_cast<const QKeyEvent&>(*event);
        if (!release.isAutoRepeat() && m_swallowed == release.nativeScanCode())
            m_releasedAt = release.timestamp();
    }
    return QObject::eventFilter(watched, event);
}

}  // namespace tralio
