#include "platform/linux/x11/x11_raw_input.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <xcb/xinput.h>

namespace tralio {
namespace {

struct KindNumbers {
    X11RawInput::Kind kind;
    quint16 eventType;
    quint32 mask;
};

/// Whether one request was made before another. Request numbers wrap around after 2^32.
bool isBefore(unsigned request, unsigned other) {
    return static_cast<int>(request - other) < 0;
}

constexpr KindNumbers kinds[] = {
    {X11RawInput::Kind::buttonPressed, XCB_INPUT_RAW_BUTTON_PRESS, XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS},
    {X11RawInput::Kind::buttonReleased, XCB_INPUT_RAW_BUTTON_RELEASE,
        XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_RELEASE},
    {X11RawInput::Kind::moved, XCB_INPUT_RAW_MOTION, XCB_INPUT_XI_EVENT_MASK_RAW_MOTION},
    {X11RawInput::Kind::keyPressed, XCB_INPUT_RAW_KEY_PRESS, XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS},
    {X11RawInput::Kind::keyReleased, XCB_INPUT_RAW_KEY_RELEASE, XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE},
};

}  // namespace

X11RawInput::Listener::Listener(X11RawInput& input, Kinds kinds, Handler handler)
    : m_input(input), m_kinds(kinds), m_handler(std::move(handler)) {
    m_input.m_listeners.push_back(this);
    m_since = m_input.select();
}

X11RawInput::Listener::~Listener() {
    std::erase(m_input.m_listeners, this);
    m_input.select();
}

X11RawInput::X11RawInput(X11Connection& connection) : m_connection(connection) {
    const xcb_query_extension_reply_t* extension =
        xcb_get_extension_data(m_connection.xcb(), &xcb_input_id);  // owned by the connection
    if (!extension || !extension->present)
        return;
    m_extension = extension->major_opcode;
    // A client may state its version only once. From 2.1 on raw events arrive even while another client has a
    // grab.
    const XcbPtr<xcb_input_xi_query_version_reply_t> version{xcb_input_xi_query_version_reply(
        m_connection.xcb(), xcb_input_xi_query_version(m_connection.xcb(), 2, 2), nullptr)};
    using Version = std::pair<int, int>;
    m_isAvailable = version && Version(version->major_version, version->minor_version) >= Version(2, 2);
    if (m_isAvailable)
        m_connection.addEventHandler([this](const xcb_generic_event_t& event) { handle(event); });
}

bool X11RawInput::isWheel(quint32 button) {
    return button >= 4 && button <= 7;  // up, down, left and right
}

unsigned X11RawInput::select() {
    if (!m_isAvailable)
        return 0;
    struct {
        xcb_input_event_mask_t head;
        quint32 events;
    } mask{{XCB_INPUT_DEVICE_ALL_MASTER, 1}, 0};
    for (const KindNumbers& numbers : kinds) {
        const bool isWanted = std::any_of(m_listeners.begin(), m_listeners.end(),
            [&](const Listener* listener) { return listener->m_kinds.testFlag(numbers.kind); });
        if (isWanted)
            mask.events |= numbers.mask;
    }
    const xcb_void_cookie_t request =
        xcb_input_xi_select_events(m_connection.xcb(), m_connection.root(), 1, &mask.head);
    xcb_flush(m_connection.xcb());
    return request.sequence;
}

void X11RawInput::handle(const xcb_generic_event_t& event) {
    if ((event.response_type & 0x7f) != XCB_GE_GENERIC)
        return;
    const auto& generic = reinterpret_cast<const xcb_ge_generic_event_t&>(event);
    const auto* numbers = std::find_if(std::begin(kinds), std::end(kinds),
        [&](const KindNumbers& candidate) { return candidate.eventType == generic.event_type; });
    if (generic.extension != m_extension || numbers == std::end(kinds))
        return;
    // The raw events of keys, buttons and motions begin with the same members.
    const auto& raw = reinterpret_cast<const xcb_input_raw_button_press_event_t&>(event);
    const Event told{numbers->kind, raw.detail, raw.time};
    if (!isOwnRelease(told, raw.full_sequence))
        tell(told, raw.full_sequence);
}

void X11RawInput::passOverOwnRelease(quint8 keyCode, unsigned request) {
    const bool isTold = std::any_of(m_listeners.begin(), m_listeners.end(),
        [](const Listener* listener) { return listener->m_kinds.testFlag(Kind::keyReleased); });
    if (isTold)
        m_ownReleases.push_back({keyCode, request});
}

bool X11RawInput::isOwnRelease(const Event& event, unsigned request) {
    if (event.kind != Kind::keyReleased)
        return false;
    std::erase_if(m_ownReleases, [=](const OwnRelease& own) { return isBefore(own.request, request); });
    // The sequence number of an event is that of the last request served. An event caused by a request
    // carries that request's number and precedes all later ones.
    return std::erase_if(m_ownReleases, [&](const OwnRelease& own) {
        return own.request == request && own.keyCode == event.detail;
    }) > 0;
}

void X11RawInput::tell(const Event& event, unsigned request) {
    const std::vector<Listener*> listeners = m_listeners;
    for (Listener* listener : listeners) {
        const bool isThere = std::find(m_listeners.begin(), m_listeners.end(), listener) != m_listeners.end();
        if (!isThere || !listener->m_kinds.testFlag(event.kind))
            continue;
        if (isBefore(request, listener->m_since))
            continue;
        const Handler handler = listener->m_handler;  // a copy, since the handler may destroy its listener
        handler(event);
    }
}

}  // namespace tralio
