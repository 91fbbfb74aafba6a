#include "programs/snip/x_display.h"

#include <array>
#include <stdexcept>
#include <utility>
#include <xcb/randr.h>
#include <xcb/xcb_renderutil.h>

#include "programs/snip/scale_settings.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

bool hasExtension(xcb_connection_t* xcb, xcb_extension_t& extension) {
    const auto* found = xcb_get_extension_data(xcb, &extension);
    return found && found->present;
}

}  // namespace

void XDisplay::Disconnect::operator()(xcb_connection_t* connection) const {
    xcb_render_util_disconnect(connection);
    xcb_disconnect(connection);
}

XDisplay::XDisplay() {
    int number = 0;
    m_connection.reset(xcb_connect(nullptr, &number));
    if (xcb_connection_has_error(xcb()))
        throw std::runtime_error("no X display");
    xcb_prefetch_extension_data(xcb(), &xcb_render_id);
    xcb_prefetch_extension_data(xcb(), &xcb_randr_id);

    auto screens = xcb_setup_roots_iterator(xcb_get_setup(xcb()));
    for (int i = 0; i < number && screens.rem > 1; ++i)
        xcb_screen_next(&screens);
    m_screen = screens.data;

    if (!hasExtension(xcb(), xcb_render_id))
        throw std::runtime_error("the X server lacks the RENDER extension");
    refuseWayland();
    findFormats();
}

void XDisplay::refuseWayland() const {
    constexpr std::string_view name = "XWAYLAND";
    const XcbPtr<xcb_query_extension_reply_t> extension{xcb_query_extension_reply(
        xcb(), xcb_query_extension(xcb(), quint16(name.size()), name.data()), nullptr)};
    // Xwayland's root window is black, and so would the picture be.
    if ((extension && extension->present) || qEnvironmentVariable("XDG_SESSION_TYPE") == u"wayland")
        throw std::runtime_error("a Wayland session does not let its screen be read through X");
}

void XDisplay::findFormats() {
    const auto* formats = xcb_render_util_query_formats(xcb());
    if (!formats)
        throw std::runtime_error("the X server tells no picture formats");
    const auto* visual = xcb_render_util_find_visual_format(formats, m_screen->root_visual);
    const auto* argb = xcb_render_util_find_standard_format(formats, XCB_PICT_STANDARD_ARGB_32);
    const auto* rgb = xcb_render_util_find_standard_format(formats, XCB_PICT_STANDARD_RGB_24);
    if (!visual || !argb || !rgb)
        throw std::runtime_error("the X server lacks a picture format");
    m_screenFormat = visual->format;
    m_argbFormat = argb->id;
    m_rgbFormat = rgb->id;
}

MonitorLayout XDisplay::monitors() const {
    const ScaleSettings scales = ScaleSettings::fromSession(resources());
    std::vector<Monitor> monitors;
    if (hasExtension(xcb(), xcb_randr_id)) {
        // Asking for monitors of a server older than RandR 1.5 gives an error, and so no monitors.
        const auto version = xcb_randr_query_version(xcb(), 1, 5);
        const XcbPtr<xcb_randr_get_monitors_reply_t> reply{
            xcb_randr_get_monitors_reply(xcb(), xcb_randr_get_monitors(xcb(), root(), 1), nullptr)};
        xcb_discard_reply(xcb(), version.sequence);

        std::vector<std::pair<QRect, xcb_get_atom_name_cookie_t>> found;
        if (reply) {
            for (auto i = xcb_randr_get_monitors_monitors_iterator(reply.get()); i.rem > 0;
                 xcb_randr_monitor_info_next(&i)) {
                found.emplace_back(QRect(i.data->x, i.data->y, i.data->width, i.data->height),
                    xcb_get_atom_name(xcb(), i.data->name));
            }
        }
        for (const auto& [area, cookie] : found) {
            const QString name = atomName(cookie);
            const QRect shown = area & QRect(QPoint(), size());
            if (!shown.isEmpty())
                monitors.push_back({name, shown, scales.scaleOf(name, int(monitors.size()))});
        }
    }
    if (monitors.empty())
        monitors.push_back({QString(), QRect(QPoint(), size()), scales.scaleOf(QString(), 0)});
    return MonitorLayout(std::move(monitors));
}

QPoint XDisplay::pointer() const {
    const XcbPtr<xcb_query_pointer_reply_t> reply{
        xcb_query_pointer_reply(xcb(), xcb_query_pointer(xcb(), root()), nullptr)};
    return reply ? QPoint(reply->root_x, reply->root_y) : QPoint();
}

void XDisplay::check() const {
    if (xcb_connection_has_error(xcb()))
        throw std::runtime_error("the X display is gone");
}

QString XDisplay::resources() const {
    constexpr quint32 maxWords = 1U << 16;
    const XcbPtr<xcb_get_property_reply_t> reply{xcb_get_property_reply(xcb(),
        xcb_get_property(xcb(), 0, root(), XCB_ATOM_RESOURCE_MANAGER, XCB_ATOM_STRING, 0, maxWords),
        nullptr)};
    if (!reply)
        return {};
    return QString::fromLatin1(static_cast<const char*>(xcb_get_property_value(reply.get())),
        xcb_get_property_value_length(reply.get()));
}

QString XDisplay::atomName(xcb_get_atom_name_cookie_t cookie) const {
    const XcbPtr<xcb_get_atom_name_reply_t> reply{xcb_get_atom_name_reply(xcb(), cookie, nullptr)};
    if (!reply)
        return {};
    return QString::fromUtf8(xcb_get_atom_name_name(reply.get()), xcb_get_atom_name_name_length(reply.get()));
}

}  // namespace tralio
