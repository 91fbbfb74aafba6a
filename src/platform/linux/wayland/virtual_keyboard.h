#pragma once

#include <QElapsedTimer>

#include "platform/linux/wayland/wayland_connection.h"

namespace tralio {

/// A virtual keyboard, on compositors that offer one to every program (those based on wlroots). Its layout is
/// US.
class VirtualKeyboard final {
public:
    /// Null if the compositor offers none.
    [[nodiscard]] static std::unique_ptr<VirtualKeyboard> open(WaylandConnection& connection);
    VirtualKeyboard(const VirtualKeyboard&) = delete;
    VirtualKeyboard& operator=(const VirtualKeyboard&) = delete;
    ~VirtualKeyboard();

    /// `code` is a key's evdev code (linux/input-event-codes.h).
    void setKey(quint32 code, bool down);

private:
    VirtualKeyboard(WaylandConnection& connection, WaylandObject seat, WaylandObject keyboard);

    void sendKeymap();

    WaylandConnection& m_connection;
    WaylandObject m_seat;
    WaylandObject m_keyboard;
    QElapsedTimer m_time;
    quint32 m_modifiers = 0;
};

}  // namespace tralio
