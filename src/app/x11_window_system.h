#pragma once

#include <optional>

#include "app/window_system.h"
#include "platform/linux/x11/x11_click_shield.h"
#include "platform/linux/x11/x11_raw_input.h"
#include "platform/linux/x11/x11_typing_aid.h"
#include "platform/linux/x11/x11_window_activator.h"

namespace tralio {

/// The window system of an X server, for windows of Qt's X11 platform.
class X11WindowSystem final : public WindowSystem {
public:
    /// Xwayland sees the mouse over X windows only: presses are reported there, but neither motions nor keys
    /// show why the focus has gone.
    enum class Sees { wholeScreen, xWindows };

    X11WindowSystem(X11Connection& connection, X11RawInput& rawInput, Sees sees);

    bool isCompositing() override { return m_activator.isCompositing(); }
    bool fades() override { return isCompositing(); }
    bool placesWindows() override { return true; }
    void setShadow(WId window, const QMargins& margins) override { m_activator.setShadow(window, margins); }
    bool isOnOtherDesktop(WId window) override { return m_activator.isOnOtherDesktop(window); }
    void activate(WId window) override { m_activator.activate(window); }
    bool isActive(WId window) override { return m_activator.isActive(window); }
    bool isOverAid() override { return isOverTypingAid(m_connection); }
    void takeClicksAt(WId window) override { m_shield.emplace(m_connection, window); }
    void giveClicksBack() override { m_shield.reset(); }
    void watchInput(InputHandler handler) override;

private:
    X11Connection& m_connection;
    X11WindowActivator m_activator;
    X11RawInput& m_rawInput;
    Sees m_sees;
    std::optional<X11RawInput::Listener> m_listener;
    std::optional<X11ClickShield> m_shield;
};

}  // namespace tralio
