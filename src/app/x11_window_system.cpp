#include "app/x11_window_system.h"

#include <utility>

#include "platform/linux/keyboard/key_codes.h"

namespace tralio {
namespace {

/// Window switchers act upon these keys, with others or let go; nobody types with them alone.
void tellOfKey(const WindowSystem::InputHandler& handler, quint8 x11KeyCode) {
    const auto key = keyWithX11Code(x11KeyCode);
    if (key == KeyCode::leftOption || key == KeyCode::leftCommand || key == KeyCode::rightCommand)
        handler(WindowSystem::Input::switchingKey);
}

}  // namespace

X11WindowSystem::X11WindowSystem(X11Connection& connection, X11RawInput& rawInput, Sees sees)
    : m_connection(connection), m_activator(connection), m_rawInput(rawInput), m_sees(sees) {}

void X11WindowSystem::watchInput(InputHandler handler) {
    if (!handler) {
        m_listener.reset();
        return;
    }
    using Kind = X11RawInput::Kind;
    X11RawInput::Kinds kinds = Kind::buttonPressed | Kind::buttonReleased;
    if (m_sees == Sees::wholeScreen)
        kinds |= Kind::moved | Kind::keyPressed | Kind::keyReleased;
    m_listener.emplace(m_rawInput, kinds, [handler = std::move(handler)](const X11RawInput::Event& event) {
        if (event.kind == Kind::moved)
            handler(Input::pointerMoved);
        else if (event.kind == Kind::keyPressed || event.kind == Kind::keyReleased)
            tellOfKey(handler, static_cast<quint8>(event.detail));
        else if (!X11RawInput::isWheel(event.detail))
            handler(event.kind == Kind::buttonPressed ? Input::buttonPressed : Input::buttonReleased);
    });
}

}  // namespace tralio
