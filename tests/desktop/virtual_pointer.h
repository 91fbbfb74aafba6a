#pragma once

#include <QElapsedTimer>
#include <QPoint>
#include <QSize>

#include "platform/linux/wayland/wayland_connection.h"

namespace tralio {

/// A pointer of a test's own, by the wlr-virtual-pointer protocol.
class VirtualPointer final {
public:
    /// `screen` is the size of all screens together. Throws where the compositor gives no pointer.
    VirtualPointer(WaylandConnection& connection, const QSize& screen);
    VirtualPointer(const VirtualPointer&) = delete;
    VirtualPointer& operator=(const VirtualPointer&) = delete;
    ~VirtualPointer();

    void move(const QPoint& place);
    void setButton(bool down);

private:
    [[nodiscard]] quint32 now() const { return static_cast<quint32>(m_time.elapsed()); }
    void frame();

    WaylandConnection& m_connection;
    QSize m_screen;
    WaylandObject m_pointer;
    QElapsedTimer m_time;
};

}  // namespace tralio
