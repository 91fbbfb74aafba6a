#include "platform/linux/x11/x11_connection.h"

#include <QAbstractEventDispatcher>
#include <QSocketNotifier>

#include <cstring>
#include <poll.h>
#include <utility>
#include <xcb/res.h>

namespace tralio {

std::unique_ptr<X11Connection> X11Connection::open() {
    int screen = 0;
    xcb_connection_t* connection = xcb_connect(nullptr, &screen);
    if (xcb_connection_has_error(connection)) {
        xcb_disconnect(connection);
        return nullptr;
    }
    return std::unique_ptr<X11Connection>(new X11Connection(connection, screen));
}

X11Connection::X11Connection(xcb_connection_t* connection, int screen) : m_xcb(connection) {
    const xcb_setup_t* setup = xcb_get_setup(m_xcb);
    auto screens = xcb_setup_roots_iterator(setup);
    for (int i = 0; i < screen && screens.rem > 1; ++i)
        xcb_screen_next(&screens);
    m_root = screens.data->root;

    m_window = xcb_generate_id(m_xcb);
    const quint32 events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(m_xcb, XCB_COPY_FROM_PARENT, m_window, m_root, -10, -10, 1, 1, 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);

    const XcbPtr<xcb_res_query_version_reply_t> res{
        xcb_res_query_version_reply(m_xcb, xcb_res_query_version(m_xcb, 1, 2), nullptr)};
    m_knowsClientIds = res && (res->server_major > 1 || res->server_minor >= 2);

    if (auto* loop = QAbstractEventDispatcher::instance())
        dispatchIn(*loop);
}

void X11Connection::dispatchIn(QAbstractEventDispatcher& loop) {
    auto* notifier = new QSocketNotifier(xcb_get_file_descriptor(m_xcb), QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this, notifier] {
        dispatchPending();
        // If the server has gone, the socket stays readable for ever.
        if (xcb_connection_has_error(m_xcb))
            notifier->setEnabled(false);
    });
    // Waiting for a reply may have read events from the socket, which then does not become readable for them.
    connect(&loop, &QAbstractEventDispatcher::aboutToBlock, this, [this] {
        xcb_flush(m_xcb);
        while (auto* event = xcb_poll_for_queued_event(m_xcb))
            m_waiting.emplace_back(event);
        if (!m_waiting.empty())
            dispatchPending();
    });
}

X11Connection::~X11Connection() {
    xcb_disconnect(m_xcb);
}

xcb_atom_t X11Connection::atom(const QByteArray& name) {
    auto found = m_atoms.constFind(name);
    if (found != m_atoms.cend())
        return *found;
    const XcbPtr<xcb_intern_atom_reply_t> reply{xcb_intern_atom_reply(
        m_xcb, xcb_intern_atom(m_xcb, 0, static_cast<quint16>(name.size()), name.constData()), nullptr)};
    const xcb_atom_t atom = reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
    m_atoms.insert(name, atom);
    return atom;
}

void X11Connection::addEventHandler(EventHandler handler) {
    m_handlers.push_back(std::move(handler));
}

void X11Connection::dispatchPending() {
    // A handler that waits for a reply may read further events, for which the socket does not become
    // readable: look again after each event.
    while (true) {
        while (auto* event = xcb_poll_for_event(m_xcb))
            m_waiting.emplace_back(event);
        if (m_waiting.empty())
            return;
        auto event = std::move(m_waiting.front());
        m_waiting.pop_front();
        receive(std::move(event));
    }
}

void X11Connection::receive(XcbPtr<xcb_generic_event_t> event) {
    for (const EventHandler& handler : m_handlers)
        handler(*event);
}

XcbPtr<xcb_generic_event_t> X11Connection::waitFor(
    const std::function<bool(const xcb_generic_event_t&)>& wanted, QDeadlineTimer deadline) {
    xcb_flush(m_xcb);
    while (true) {
        while (auto* raw = xcb_poll_for_event(m_xcb)) {
            XcbPtr<xcb_generic_event_t> event{raw};
            if (wanted(*event))
                return event;
            m_waiting.push_back(std::move(event));
        }
        const qint64 remaining = deadline.remainingTime();
        if (remaining <= 0 || xcb_connection_has_error(m_xcb))
            return nullptr;
        pollfd readable{xcb_get_file_descriptor(m_xcb), POLLIN, 0};
        poll(&readable, 1, static_cast<int>(remaining));
    }
}

QByteArray X11Connection::property(xcb_window_t window, xcb_atom_t name) {
    constexpr quint32 maxWords = 1024;  // names, titles and flags of other programs' windows
    const XcbPtr<xcb_get_property_reply_t> reply{xcb_get_property_reply(
        m_xcb, xcb_get_property(m_xcb, 0, window, name, XCB_GET_PROPERTY_TYPE_ANY, 0, maxWords), nullptr)};
    if (!reply)
        return {};
    return {static_cast<const char*>(xcb_get_property_value(reply.get())),
        xcb_get_property_value_length(reply.get())};
}

std::optional<quint32> X11Connection::cardinal(xcb_window_t window, xcb_atom_t name) {
    const QByteArray value = property(window, name);
    quint32 number = 0;
    if (value.size() < qsizetype(sizeof number))
        return std::nullopt;
    std::memcpy(&number, value.constData(), sizeof number);
    return number;
}

std::optional<qint32> X11Connection::processOf(xcb_window_t window) {
    if (m_knowsClientIds) {
        const xcb_res_client_id_spec_t wanted{window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
        const XcbPtr<xcb_res_query_client_ids_reply_t> reply{
            xcb_res_query_client_ids_reply(m_xcb, xcb_res_query_client_ids(m_xcb, 1, &wanted), nullptr)};
        if (reply) {
            const auto ids = xcb_res_query_client_ids_ids_iterator(reply.get());
            if (ids.rem > 0 && xcb_res_client_id_value_value_length(ids.data) > 0)
                return static_cast<qint32>(*xcb_res_client_id_value_value(ids.data));
        }
    }
    const auto said = cardinal(window, atom("_NET_WM_PID"));
    return said ? std::optional(static_cast<qint32>(*said)) : std::nullopt;
}

bool X11Connection::hasWindowManager() {
    const xcb_atom_t check = atom("_NET_SUPPORTING_WM_CHECK");
    const auto window = cardinal(m_root, check);
    return window && cardinal(*window, check) == window;
}

void X11Connection::sync() {
    const XcbPtr<xcb_get_input_focus_reply_t> reply{
        xcb_get_input_focus_reply(m_xcb, xcb_get_input_focus(m_xcb), nullptr)};
}

xcb_timestamp_t X11Connection::serverTime() {
    const xcb_atom_t stamp = atom("_TRALIO_TIME");
    xcb_change_property(m_xcb, XCB_PROP_MODE_APPEND, m_window, stamp, XCB_ATOM_INTEGER, 32, 0, nullptr);
    const auto event = waitFor(
        [&](const xcb_generic_event_t& candidate) {
            return (candidate.response_type & 0x7f) == XCB_PROPERTY_NOTIFY &&
                reinterpret_cast<const xcb_property_notify_event_t&>(candidate).atom == stamp;
        },
        QDeadlineTimer(100));
    return event ? reinterpret_cast<const xcb_property_notify_event_t&>(*event).time
                 : static_cast<xcb_timestamp_t>(XCB_CURRENT_TIME);
}

}  // namespace tralio
