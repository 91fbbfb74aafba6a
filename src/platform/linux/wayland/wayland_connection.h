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

/// An object of the compositor's. Letting it go frees our side only; where the protocol has a destructor
/// request, that is sent before.
using WaylandObject = std::unique_ptr<wl_proxy, DestroyProxy>;

/// A connection of our own to the Wayland compositor, beside the one of the toolkit, which may well be an X11
/// program here. Used from the main thread.
class WaylandConnection final : public QObject {
    Q_OBJECT

public:
    /// Milliseconds. Compositors that have just started are busy for a second or more, and who is not greeted
    /// has no hot keys for the whole session.
    static constexpr int greetingLimit = 10'000;

    /// Connects to $WAYLAND_DISPLAY and learns what the compositor offers; null when there is none, or when
    /// it does not answer within `limit`, in milliseconds. Events then come from the event loop.
    [[nodiscard]] static std::unique_ptr<WaylandConnection> open(int limit = greetingLimit);
    /// The same without an event loop, which need not exist yet: events come in sync() only.
    [[nodiscard]] static std::unique_ptr<WaylandConnection> greet(int limit = greetingLimit);
    ~WaylandConnection() override;

    /// The version of a global object of the compositor's; zero when it has none.
    [[nodiscard]] quint32 versionOf(const QByteArray& interface) const;

    /// Binds a global object, in at most `version`; null when the compositor has none.
    [[nodiscard]] WaylandObject bind(const wl_interface& interface, quint32 version);
    /// All of the kind, where a compositor has several.
    [[nodiscard]] std::vector<WaylandObject> bindAll(const wl_interface& interface, quint32 version);

    /// Waits until the compositor has dealt with everything asked so far, and hands out what it said; false
    /// when the time is over first.
    bool sync(QDeadlineTimer deadline);
    void flush();

    /// The compositor is gone, or has ended the connection.
    [[nodiscard]] bool isLost() const { return m_lost; }

    void addGlobal(quint32 name, const char* interface, quint32 version);

Q_SIGNALS:
    /// isLost() from now on.
    void lost();

private:
    struct Global {
        quint32 name = 0;
        quint32 version = 0;
    };

    explicit WaylandConnection(wl_display* display);

    /// Reads what has arrived, waiting for it until `deadline`, and hands it out.
    bool dispatch(QDeadlineTimer deadline);
    void listen();

    wl_display* m_display;
    wl_registry* m_registry;
    QHash<QByteArray, std::vector<Global>> m_globals;
    bool m_lost = false;
};

}  // namespace tralio
