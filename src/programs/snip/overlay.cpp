#include "programs/snip/overlay.h"

#include <QColor>

#include <string_view>

namespace tralio {
namespace {

constexpr QColor frameLight(255, 255, 255, 235);

/// How often the overlay is raised again. Another program may insist on being on top; this ends the contest.
constexpr int mostRaises = 40;

/// A frame of the given breadth around a rectangle.
QRegion frameAround(const QRect& area, int breadth) {
    return QRegion(area.adjusted(-breadth, -breadth, breadth, breadth)) - area;
}

std::span<const QRect> rectanglesOf(const QRegion& region) {
    return {region.begin(), size_t(region.rectCount())};
}

}  // namespace

Overlay::Overlay(const XDisplay& display, const FrozenScreen& screen)
    : m_display(display),
      m_screen(screen),
      m_frame(XPicture::likeScreen(display, screen.size())),
      m_window(xcb_generate_id(display.xcb())),
      m_context(xcb_generate_id(display.xcb())) {
    const quint32 values[] = {
        screen.dimmed().pixmap(), 1, XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_VISIBILITY_CHANGE};
    xcb_create_window(display.xcb(), XCB_COPY_FROM_PARENT, m_window, display.root(), 0, 0,
        quint16(screen.size().width()), quint16(screen.size().height()), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
        XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXMAP | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
    constexpr std::string_view windowClass("tralio-snip\0tralio-snip\0", 24);
    xcb_change_property(display.xcb(), XCB_PROP_MODE_REPLACE, m_window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
        quint32(windowClass.size()), windowClass.data());
    const quint32 noEvents = 0;  // else the server would report the end of every copy
    xcb_create_gc(display.xcb(), m_context, m_window, XCB_GC_GRAPHICS_EXPOSURES, &noEvents);
}

Overlay::~Overlay() {
    xcb_destroy_window(m_display.xcb(), m_window);
    xcb_free_gc(m_display.xcb(), m_context);
    m_display.flush();
}

void Overlay::show() {
    xcb_map_window(m_display.xcb(), m_window);
    // After mapping, since the window's background shows the dimmed screen already: on a large screen a copy
    // before it would be a visible delay.
    m_frame.copyFrom(m_screen.dimmed().picture(), QRect(QPoint(), m_screen.size()));
    m_display.flush();
}

void Overlay::draw(const Scene& scene) {
    QRegion marks;
    for (const Mark& mark : scene.marks)
        marks += mark.area();
    QRegion edge;
    if (scene.area) {
        edge = frameAround(*scene.area, scene.line);
        marks += edge;
    }
    const QRegion area = scene.area ? QRegion(*scene.area) : QRegion();
    const QRegion changed = ((m_area ^ area) + m_marks + marks) & QRect(QPoint(), m_screen.size());
    m_area = area;
    m_marks = marks;
    if (changed.isEmpty())
        return;

    for (const QRect& part : changed - area)
        m_frame.copyFrom(m_screen.dimmed().picture(), part);
    for (const QRect& part : changed& area)
        m_frame.copyFrom(m_screen.bright().picture(), part);
    m_frame.clipTo(rectanglesOf(changed));
    if (!edge.isEmpty())
        m_frame.fill(rectanglesOf(edge), frameLight);
    for (const Mark& mark : scene.marks)
        m_frame.lay(*mark.picture, mark.place, mark.opacity);
    m_frame.liftClip();
    for (const QRect& part : changed)
        copyToWindow(part);
    m_display.flush();
}

void Overlay::handle(const xcb_generic_event_t& event) {
    const int type = event.response_type & 0x7f;
    if (type == XCB_EXPOSE) {
        const auto& expose = reinterpret_cast<const xcb_expose_event_t&>(event);
        copyToWindow({expose.x, expose.y, expose.width, expose.height});
    } else if (type == XCB_VISIBILITY_NOTIFY) {
        const auto& visibility = reinterpret_cast<const xcb_visibility_notify_event_t&>(event);
        if (visibility.state != XCB_VISIBILITY_UNOBSCURED && m_raises++ < mostRaises) {
            const quint32 above = XCB_STACK_MODE_ABOVE;
            xcb_configure_window(m_display.xcb(), m_window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
        }
    }
    m_display.flush();
}

void Overlay::copyToWindow(const QRect& part) {
    const xcb_rectangle_t area = toX(part);
    xcb_copy_area(m_display.xcb(), m_frame.pixmap(), m_window, m_context, area.x, area.y, area.x, area.y,
        area.width, area.height);
}

}  // namespace tralio
