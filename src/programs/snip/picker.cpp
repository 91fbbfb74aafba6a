#include "programs/snip/picker.h"

#include <poll.h>

// X11's key names are macros behind this one.
#define XK_MISCELLANY
#include <X11/keysymdef.h>

#include "programs/snip/decoration.h"
#include "programs/snip/marks.h"

namespace tralio {
namespace {

constexpr int frameTime = 16;  // ms
/// Milliseconds without input after which the picker cancels: its keyboard grab would keep the screen from
/// being locked.
constexpr int mostIdle = 120'000;

template <typename Event>
const Event& as(const xcb_generic_event_t& event) {
    return reinterpret_cast<const Event&>(event);
}

std::optional<QPoint> arrowOf(xcb_keysym_t key) {
    switch (key) {
        case XK_Left:
        case XK_KP_Left:
            return QPoint(-1, 0);
        case XK_Right:
        case XK_KP_Right:
            return QPoint(1, 0);
        case XK_Up:
        case XK_KP_Up:
            return QPoint(0, -1);
        case XK_Down:
        case XK_KP_Down:
            return QPoint(0, 1);
        default:
            return std::nullopt;
    }
}

}  // namespace

Picker::Picker(const XDisplay& display, FrozenScreen& screen, const MonitorLayout& monitors)
    : m_display(display),
      m_screen(screen),
      m_monitors(monitors),
      m_selection(monitors, display.pointer()),
      m_keys(xcb_key_symbols_alloc(display.xcb()), &xcb_key_symbols_free) {
    // Reports changes of the screen's size.
    const quint32 events = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(display.xcb(), display.root(), XCB_CW_EVENT_MASK, &events);
}

std::optional<QRect> Picker::pick() {
    double scale = m_monitors.at(m_selection.pointer()).scale;
    InputGrab grab(m_display, crossFor(scale), [this] { m_screen.freeze(); });
    for (size_t key = 0; key < grab.heldKeys().size(); ++key)
        if (grab.heldKeys()[key])
            m_heldKeys.emplace(key, std::nullopt);
    Overlay overlay(m_display, m_screen);
    overlay.show();

    Decoration decoration(m_display, m_monitors);
    while (true) {
        handlePending(overlay);
        if (m_selection.isOver())
            return m_selection.stage() == RegionSelection::Stage::Confirmed ? m_selection.area()
                                                                            : std::nullopt;
        if (const double wanted = m_monitors.at(m_selection.pointer()).scale; wanted != scale) {
            scale = wanted;
            grab.setCursor(crossFor(scale));
        }
        overlay.draw(decoration.scene(m_selection));
        waitForEvent(decoration.isFading());
    }
}

void Picker::handlePending(Overlay& overlay) {
    while (const XcbPtr<xcb_generic_event_t> event{
        m_queued ? m_queued.release() : xcb_poll_for_event(m_display.xcb())}) {
        overlay.handle(*event);
        handle(*event);
    }
    m_display.check();
}

void Picker::handle(const xcb_generic_event_t& event) {
    switch (event.response_type & 0x7f) {
        case XCB_MOTION_NOTIFY: {
            const auto& motion = as<xcb_motion_notify_event_t>(event);
            m_selection.moveTo({motion.root_x, motion.root_y});
            break;
        }
        case XCB_BUTTON_PRESS:
            pressButton(as<xcb_button_press_event_t>(event));
            break;
        case XCB_BUTTON_RELEASE: {
            const auto& release = as<xcb_button_release_event_t>(event);
            if (release.detail == XCB_BUTTON_INDEX_1)
                m_selection.release({release.root_x, release.root_y});
            break;
        }
        case XCB_KEY_PRESS:
            if (const auto& press = as<xcb_key_press_event_t>(event); !isRepeat(press))
                pressKey(press);
            break;
        case XCB_KEY_RELEASE: {
            const auto& release = as<xcb_key_release_event_t>(event);
            if (const auto held = m_heldKeys.find(release.detail); held != m_heldKeys.end())
                held->second = release.time;
            break;
        }
        case XCB_MAPPING_NOTIFY: {
            auto mapping = as<xcb_mapping_notify_event_t>(event);
            xcb_refresh_keyboard_mapping(m_keys.get(), &mapping);
            break;
        }
        case XCB_CONFIGURE_NOTIFY: {
            const auto& change = as<xcb_configure_notify_event_t>(event);
            // The frozen picture no longer matches the screen.
            if (change.window == m_display.root() && QSize(change.width, change.height) != m_screen.size())
                m_selection.cancel();
            break;
        }
        default:
            break;
    }
}

void Picker::pressButton(const xcb_button_press_event_t& event) {
    if (event.detail == XCB_BUTTON_INDEX_1)
        m_selection.press({event.root_x, event.root_y});
    else if (event.detail == XCB_BUTTON_INDEX_3)
        m_selection.cancel();
}

bool Picker::isRepeat(const xcb_key_press_event_t& event) {
    const auto held = m_heldKeys.find(event.detail);
    if (held == m_heldKeys.end())
        return false;
    // The server repeats a key as a release and a press at one time.
    if (!held->second || *held->second == event.time)
        return true;
    m_heldKeys.erase(held);
    return false;
}

void Picker::pressKey(const xcb_key_press_event_t& event) {
    using ArrowEffect = RegionSelection::ArrowEffect;
    using Stride = RegionSelection::Stride;
    const xcb_keysym_t key = xcb_key_symbols_get_keysym(m_keys.get(), event.detail, 0);
    if (key == XK_Escape)
        m_selection.cancel();
    else if (key == XK_Return || key == XK_KP_Enter)
        m_selection.confirm();
    else if (const auto direction = arrowOf(key))
        m_selection.pressArrow(*direction,
            event.state & XCB_MOD_MASK_SHIFT ? ArrowEffect::Resize : ArrowEffect::Move,
            event.state & XCB_MOD_MASK_CONTROL ? Stride::Coarse : Stride::Fine);
}

void Picker::waitForEvent(bool isFading) {
    m_display.flush();
    // Flushing may have read events into the queue, for which poll() would not wake up.
    m_queued.reset(xcb_poll_for_queued_event(m_display.xcb()));
    if (m_queued)
        return;
    pollfd readable{xcb_get_file_descriptor(m_display.xcb()), POLLIN, 0};
    if (poll(&readable, 1, isFading ? frameTime : mostIdle) == 0 && !isFading)
        m_selection.cancel();
}

xcb_cursor_t Picker::crossFor(double scale) {
    if (const auto found = m_crosses.find(scale); found != m_crosses.end())
        return found->second;
    const XPicture cross = XPicture::fromImage(m_display, drawCross(scale));
    const xcb_cursor_t cursor = xcb_generate_id(m_display.xcb());
    xcb_render_create_cursor(m_display.xcb(), cursor, cross.picture(), quint16(cross.size().width() / 2),
        quint16(cross.size().height() / 2));
    m_crosses.emplace(scale, cursor);
    return cursor;
}

}  // namespace tralio
