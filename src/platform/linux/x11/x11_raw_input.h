#pragma once

#include <QFlags>

#include <functional>
#include <vector>

#include "platform/linux/x11/x11_connection.h"

namespace tralio {

/// Reports keys and the mouse anywhere on the screen, whatever has the focus or a grab, through the raw
/// events of the X Input extension (2.2 or later). Only events with a listener are requested from the server.
/// Used from the main thread.
class X11RawInput final {
public:
    enum class Kind : quint32 {
        buttonPressed = 1,
        buttonReleased = 2,
        moved = 4,
        keyReleased = 8,
        keyPressed = 16
    };
    Q_DECLARE_FLAGS(Kinds, Kind)

    struct Event {
        Kind kind;
        quint32 detail;  ///< the number of the button, or the X key code
        xcb_timestamp_t time;
    };
    using Handler = std::function<void(const Event&)>;

    /// Receives the events of its kinds while it exists; none from before its construction, even if the
    /// server delivers them later. The X11RawInput outlives it. The handler may destroy it.
    class Listener final {
    public:
        Listener(X11RawInput& input, Kinds kinds, Handler handler);
        Listener(const Listener&) = delete;
        Listener& operator=(const Listener&) = delete;
        ~Listener();

    private:
        friend X11RawInput;

        X11RawInput& m_input;
        Kinds m_kinds;
        Handler m_handler;
        unsigned m_since = 0;  ///< the first request whose events are for this listener
    };

    explicit X11RawInput(X11Connection& connection);

    /// Whether the server supports raw events.
    [[nodiscard]] bool isAvailable() const { return m_isAvailable; }

    /// Hides the release of a key that this connection makes with this request from all listeners.
    void passOverOwnRelease(quint8 keyCode, unsigned request);

    /// Whether a button number stands for the mouse's wheel.
    [[nodiscard]] static bool isWheel(quint32 button);

private:
    struct OwnRelease {
        quint8 keyCode;
        unsigned request;
    };

    void handle(const xcb_generic_event_t& event);
    [[nodiscard]] bool isOwnRelease(const Event& event, unsigned request);
    /// `request` is the last one that the server had handled when the event happened.
    void tell(const Event& event, unsigned request);
    /// Requests the events that the listeners want; returns the number of that request.
    unsigned select();

    X11Connection& m_connection;
    quint8 m_extension = 0;
    bool m_isAvailable = false;
    std::vector<Listener*> m_listeners;
    std::vector<OwnRelease> m_ownReleases;  ///< whose events have not arrived yet
};

Q_DECLARE_OPERATORS_FOR_FLAGS(X11RawInput::Kinds)

}  // namespace tralio
