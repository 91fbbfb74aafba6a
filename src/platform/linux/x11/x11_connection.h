#pragma once

#include <QByteArray>
#include <QDeadlineTimer>
#include <QHash>
#include <QObject>

#include <cstdlib>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <vector>
#include <xcb/xcb.h>

class QAbstractEventDispatcher;

namespace tralio {

struct FreeMemory {
    void operator()(void* memory) const { std::free(memory); }
};

/// Memory that xcb returns and the caller must free.
template <typename T>
using XcbPtr = std::unique_ptr<T, FreeMemory>;

/// A connection of our own to the X server, apart from Qt's: grabs, clipboard watching and synthetic input
/// must not depend on what Qt does with its events.
class X11Connection final : public QObject {
public:
    using EventHandler = std::function<void(const xcb_generic_event_t&)>;

    /// Connects to $DISPLAY; null when there is no X server.
    [[nodiscard]] static std::unique_ptr<X11Connection> open();
    ~X11Connection() override;

    [[nodiscard]] xcb_connection_t* xcb() const { return m_xcb; }
    [[nodiscard]] xcb_window_t root() const { return m_root; }
    /// A small window that is never shown, for requests that need one: selections and time stamps.
    [[nodiscard]] xcb_window_t window() const { return m_window; }
    [[nodiscard]] xcb_atom_t atom(const QByteArray& name);

    /// Every handler gets every event of the connection, from the event loop.
    void addEventHandler(EventHandler handler);
    /// Delivers the events that have arrived, without waiting for the event loop.
    void dispatchPending();

    /// Waits for an event that `wanted` accepts and returns it; other events are delivered later, in order.
    /// Null if the time is over first.
    [[nodiscard]] XcbPtr<xcb_generic_event_t> waitFor(
        const std::function<bool(const xcb_generic_event_t&)>& wanted, QDeadlineTimer deadline);

    /// The value of a property, at most its first 4 KiB; empty if absent.
    [[nodiscard]] QByteArray property(xcb_window_t window, xcb_atom_t name);
    [[nodiscard]] std::optional<quint32> cardinal(xcb_window_t window, xcb_atom_t name);

    /// The process that created a window. The server knows it from the connection, so that sandboxed programs
    /// cannot lie; where it does not, the window's own property counts.
    [[nodiscard]] std::optional<qint32> processOf(xcb_window_t window);

    /// Whether a window manager runs. Its properties on the root window outlive it, so its window is checked.
    [[nodiscard]] bool hasWindowManager();

    /// Waits until the server has handled all requests sent so far.
    void sync();
    /// The server's current time, for requests that must not look old.
    [[nodiscard]] xcb_timestamp_t serverTime();

private:
    /// Has events delivered by this event loop. On a thread without one they wait for who asks for them.
    void dispatchIn(QAbstractEventDispatcher& loop);
    explicit X11Connection(xcb_connection_t* connection, int screen);

    void receive(XcbPtr<xcb_generic_event_t> event);

    xcb_connection_t* m_xcb;
    xcb_window_t m_root = XCB_NONE;
    xcb_window_t m_window = XCB_NONE;
    bool m_knowsClientIds = false;
    QHash<QByteArray, xcb_atom_t> m_atoms;
    std::deque<XcbPtr<xcb_generic_event_t>> m_waiting;
    std::vector<EventHandler> m_handlers;
};

}  // namespace tralio
