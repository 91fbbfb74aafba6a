#include "platform/linux/wayland/wayland_connection.h"

#include <QAbstractEventDispatcher>
#include <QSocketNotifier>

#include <algorithm>
#include <poll.h>
#include <wayland-client.h>

namespace tralio {
namespace {

void globalAdded(
    void* connection, wl_registry* /*registry*/, quint32 name, const char* interface, quint32 version) {
    static_cast<WaylandConnection*>(connection)->addGlobal(name, interface, version);
}

// Globals that can go away while we run (screens, keyboards) are never bound here.
void globalRemoved(void* /*connection*/, wl_registry* /*registry*/, quint32 /*name*/) {}

constexpr wl_registry_listener registryListener{globalAdded, globalRemoved};

void syncDone(void* done, wl_callback* /*callback*/, quint32 /*serial*/) {
    *static_cast<bool*>(done) = true;
}

constexpr wl_callback_listener syncListener{syncDone};

}  // namespace

void DestroyProxy::operator()(wl_proxy* proxy) const {
    wl_proxy_destroy(proxy);
}

std::unique_ptr<WaylandConnection> WaylandConnection::open(int limit) {
    auto connection = greet(limit);
    if (connection)
        connection->listen();
    return connection;
}

std::unique_ptr<WaylandConnection> WaylandConnection::greet(int limit) {
    // Without the variable libwayland would try a default socket, which may be another session's.
    if (!qEnvironmentVariableIsSet("WAYLAND_DISPLAY"))
        return nullptr;
    wl_display* display = wl_display_connect(nullptr);
    if (!display)
        return nullptr;
    std::unique_ptr<WaylandConnection> connection(new WaylandConnection(display));
    if (!connection->sync(QDeadlineTimer(limit)))
        return nullptr;
    return connection;
}

WaylandConnection::WaylandConnection(wl_display* display)
    : m_display(display), m_registry(wl_display_get_registry(display)) {
    wl_registry_add_listener(m_registry, &registryListener, this);
}

WaylandConnection::~WaylandConnection() {
    wl_registry_destroy(m_registry);
    wl_display_disconnect(m_display);
}

void WaylandConnection::listen() {
    auto* notifier = new QSocketNotifier(wl_display_get_fd(m_display), QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this, notifier] {
        if (dispatch(QDeadlineTimer(0)))
            return;
        notifier->setEnabled(false);
        Q_EMIT lost();
    });
    connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, this,
        &WaylandConnection::flush);
}

void WaylandConnection::addGlobal(quint32 name, const char* interface, quint32 version) {
    m_globals[interface].push_back({name, version});
}

quint32 WaylandConnection::versionOf(const QByteArray& interface) const {
    const auto known = m_globals.constFind(interface);
    return known == m_globals.cend() ? 0 : known->front().version;
}

WaylandObject WaylandConnection::bind(const wl_interface& interface, quint32 version) {
    // Of several, the first; the first seat is the user's.
    auto all = bindAll(interface, version);
    return all.empty() ? nullptr : std::move(all.front());
}

std::vector<WaylandObject> WaylandConnection::bindAll(const wl_interface& interface, quint32 version) {
    std::vector<WaylandObject> all;
    for (const Global& global : m_globals.value(interface.name)) {
        const quint32 agreed = std::min(global.version, version);
        all.emplace_back(
            static_cast<wl_proxy*>(wl_registry_bind(m_registry, global.name, &interface, agreed)));
    }
    return all;
}

bool WaylandConnection::sync(QDeadlineTimer deadline) {
    if (m_lost)
        return false;
    bool done = false;
    wl_callback* callback = wl_display_sync(m_display);
    wl_callback_add_listener(callback, &syncListener, &done);
    while (!done && !deadline.hasExpired() && dispatch(deadline)) {
    }
    wl_callback_destroy(callback);
    return done;
}

void WaylandConnection::flush() {
    wl_display_flush(m_display);
}

bool WaylandConnection::dispatch(QDeadlineTimer deadline) {
    while (wl_display_prepare_read(m_display) != 0)
        if (wl_display_dispatch_pending(m_display) < 0)
            return !(m_lost = true);
    wl_display_flush(m_display);
    pollfd readable{wl_display_get_fd(m_display), POLLIN, 0};
    if (poll(&readable, 1, static_cast<int>(deadline.remainingTime())) <= 0) {
        wl_display_cancel_read(m_display);
        return true;
    }
    m_lost = wl_display_read_events(m_display) < 0 || wl_display_dispatch_pending(m_display) < 0;
    return !m_lost;
}

}  // namespace tralio
