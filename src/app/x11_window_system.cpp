#include "app/x11_window_system.h"

#include <utility>

namespace tralio {

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
            handler(Input::key);
        else if (!X11RawInput::isWheel(event.detail))
            handler(event.kind == Kind::buttonPressed ? Input::buttonPressed : Input::buttonReleased);
    });
}

}  // namespace tralio
