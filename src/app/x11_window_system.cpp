#include "app/x11_window_system.h"

#include <utility>

namespace tralio {

X11WindowSystem::X11WindowSystem(X11Connection& connection, X11RawInput& rawInput, Sees sees)
    : m_connection(connection), m_activator(connection), m_rawInput(rawInput), m_sees(sees) {}

void X11WindowSystem::watchPointer(PointerHandler handler) {
    if (!handler) {
        m_listener.reset();
        return;
    }
    using Kind = X11RawInput::Kind;
    X11RawInput::Kinds kinds = Kind::buttonPressed | Kind::buttonReleased;
    kinds.setFlag(Kind::moved, m_sees == Sees::wholeScreen);
    m_listener.emplace(m_rawInput, kinds, [handler = std::move(handler)](const X11RawInput::Event& event) {
        if (event.kind == Kind::moved)
            handler(Pointer::moved);
        else if (!X11RawInput::isWheel(event.detail))
            handler(event.kind == Kind::buttonPressed ? Pointer::pressed : Pointer::released);
    });
}

}  // namespace tralio
