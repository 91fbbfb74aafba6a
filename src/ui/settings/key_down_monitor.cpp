#include "ui/settings/key_down_monitor.h"

#include <QGuiApplication>
#include <QInputMethodQueryEvent>
#include <QKeyEvent>

#include <utility>

#include "ui/kit/keyboard_use.h"

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

/// Whether the key is at the position of a modifier or Caps Lock. With Alt held, Shift may switch the layout,
/// and its key symbol is then no modifier.
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

/// Swallows the repeats of a key until it is pressed again, then deletes itself.
class HeldKey final : public QObject {
public:
    explicit HeldKey(quint32 scanCode) : QObject(QCoreApplication::instance()), m_scanCode(scanCode) {
        parent()->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        const bool goesDown = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
        if (!goesDown || static_cast<const QKeyEvent&>(*event).nativeScanCode() != m_scanCode)
            return QObject::eventFilter(watched, event);
        if (isRepeat(static_cast<const QKeyEvent&>(*event))) {
            event->accept();
            return true;
        }
        parent()->removeEventFilter(this);
        deleteLater();
        return false;
    }

private:
    quint32 m_scanCode;
};

/// Deletes itself.
void swallowRepeats(quint32 scanCode) {
    new HeldKey(scanCode);
}

}  // namespace

KeyDownMonitor::KeyDownMonitor(KeyCodes keyCodes, Handler handler, QObject* parent)
    : QObject(parent), m_keyCodes(std::move(keyCodes)), m_handler(std::move(handler)) {
    QCoreApplication::instance()->installEventFilter(this);
    QGuiApplication::inputMethod()->commit();  // keeps what the user has begun to compose
    QGuiApplication::inputMethod()->update(Qt::ImEnabled);
}

KeyDownMonitor::~KeyDownMonitor() {
    QCoreApplication::instance()->removeEventFilter(this);
    QGuiApplication::inputMethod()->update(Qt::ImEnabled);
    if (m_swallowed)
        swallowRepeats(*m_swallowed);
}

std::optional<KeyCombination> KeyDownMonitor::keyDown(const QKeyEvent& event) const {
    if (isModifier(event.key()))
        return std::nullopt;
    // A user who has moved Escape to another key means the key that closes things, wherever it is.
    const auto keyCode = event.key() == Qt::Key_Escape ? KeyCode::escape : m_keyCodes(event.nativeScanCode());
    const bool hasName = event.key() != 0 && event.key() != Qt::Key_unknown;
    if (!keyCode || (!hasName && isModifierPosition(*keyCode)))
        return std::nullopt;
    return KeyCombination{*keyCode, modifiersOf(event.modifiers())};
}

bool KeyDownMonitor::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::InputMethodQuery) {
        // An input method would get keys first, for example a dead key with any modifiers, which it keeps
        // until the letter comes.
        auto& query = static_cast<QInputMethodQueryEvent&>(*event);
        if (query.queries() & Qt::ImEnabled) {
            query.setValue(Qt::ImEnabled, false);
            query.accept();
            return true;
        }
    }
    if (event->type() == QEvent::ShortcutOverride) {
        // Qt first asks whether the key is a shortcut of the window: none is while recording.
        event->accept();
        return true;
    }
    if (event->type() == QEvent::KeyPress) {
        const auto& press = static_cast<const QKeyEvent&>(*event);
        const auto key = keyDown(press);
        if (key && m_handler(*key)) {
            m_swallowed = press.nativeScanCode();
            event->accept();
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}

}  // namespace tralio
