#pragma once

#include <QByteArray>
#include <QDeadlineTimer>
#include <QHash>
#include <QObject>

#include <memory>
#include <optional>
#include <vector>

struct wl_display;
struct wl_interface;
struct wl_proxy;
struct wl_registry;

namespace tralio {

struct DestroyProxy {
    void operator()(wl_proxy* proxy) const;
};

/// An object of the compositor. Releasing it frees only our side; where the protocol has a destructor
/// request, that has to be sent first.
using WaylandObject = std::unique_ptr<wl_proxy, DestroyProxy>;

/// A connection of our own to the Wayland compositor, apart from Qt's, which may use X11 in this session.
/// Used from the main thread.
class WaylandConnection final : public QObject {
    Q_OBJECT

public:
    /// In milliseconds. Compositors that have just started are busy for a second or more, and without an
    /// answer here there would be no hot keys for the whole session.
    static constexpr int greetingLimit = 10'000;

    /// Connects to $WAYLAND_DISPLAY and learns what the compositor offers; null if there is none, or if it
    /// does not answer within `limit`, in milliseconds. Events are then delivered from the event loop.
    [[nodiscard]] static std::unique_ptr<WaylandConnection> open(int limit = greetingLimit);
    /// The same without an event loop, which need not exist yet: events are delivered in sync() only.
    [[nodiscard]] static std::unique_ptr<WaylandConnection> greet(int limit = greetingLimit);
    ~WaylandConnection() override;

    /// The version of one of the compositor's globals; zero if it does not have it.
    [[nodiscard]] quint32 versionOf(const QByteArray& interface) const;

    /// Binds a global in at most `version`; null if the compositor does not have it.
    [[nodiscard]] WaylandObject bind(const wl_interface& interface, quint32 version);
    /// Binds all globals of this interface.
    [[nodiscard]] std::vector<WaylandObject> bindAll(const wl_interface& interface, quint32 version);

    /// Waits until the compositor has handled all requests sent so far, and delivers its events; false if the
    /// time is over first.
    bool sync(QDeadlineTimer deadline);
    void flush();

    /// The compositor has gone, or has closed the connection.
    [[nodiscard]] bool isLost() const { return m_lost; }

    void addGlobal(quint32 name, const char* interface, quint32 version);

Q_SIGNALS:
    /// Emitted when isLost() becomes true.
    void lost();

private:
    struct Global {
        quint32 name = 0;
        quint32 version = 0;
    };

    explicit WaylandConnection(wl_display* display);

    /// Waits for events until `deadline`, then reads and delivers them.
    bool dispatch(QDeadlineTimer deadline);
    void listen();

    wl_display* m_display;
    wl_registry* m_registry;
    QHash<QByteArray, std::vector<Global>> m_globals;
    bool m_lost = false;
};

}  // namespace tralio
