#include "platform/linux/wayland/magnified_xwayland.h"

#include <algorithm>
#include <memory>
#include <numeric>
#include <wayland-client-protocol.h>
#include <xcb/randr.h>

#include "platform/linux/wayland/wayland_connection.h"
#include "platform/linux/wayland/wayland_proxy.h"
#include "platform/linux/x11/x11_connection.h"

namespace tralio {
namespace {

struct Screen {
    [[nodiscard]] qint64 pixels() const { return qint64{size.width()} * size.height(); }

    QSize size;  ///< in pixels
    qint32 scale = 1;
};

Screen& screen(void* data) {
    return *static_cast<Screen*>(data);
}

// wl_output's first two versions.
constexpr wl_output_listener screenListener{
    .geometry = [](void*, wl_output*, qint32, qint32, qint32, qint32, qint32, const char*, const char*,
                    qint32) {},
    .mode =
        [](void* data, wl_output*, quint32 flags, qint32 width, qint32 height, qint32 /*refresh*/) {
            if (flags & WL_OUTPUT_MODE_CURRENT)
                screen(data).size = QSize(width, height);
        },
    .done = [](void*, wl_output*) {},
    .scale = [](void* data, wl_output*, qint32 factor) { screen(data).scale = factor; },
    .name = nullptr,
    .description = nullptr,
};

std::vector<Screen> screensOfCompositor() {
    const auto connection = WaylandConnection::greet();
    if (!connection)
        return {};
    const auto outputs = connection->bindAll(wl_output_interface, 2);
    std::vector<Screen> screens(outputs.size());
    for (size_t i = 0; i < outputs.size(); ++i)
        addListener(outputs[i].get(), screenListener, &screens[i]);
    connection->sync(QDeadlineTimer(WaylandConnection::greetingLimit));
    return screens;
}

/// Of all monitors together.
qint64 pixelsOfX11() {
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(
        xcb_connect(nullptr, nullptr), &xcb_disconnect);
    xcb_connection_t* xcb = connection.get();
    if (xcb_connection_has_error(xcb))
        return 0;
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(xcb)).data->root;
    const auto version = xcb_randr_query_version(xcb, 1, 5);
    const XcbPtr<xcb_randr_get_monitors_reply_t> monitors{
        xcb_randr_get_monitors_reply(xcb, xcb_randr_get_monitors(xcb, root, 1), nullptr)};
    xcb_discard_reply(xcb, version.sequence);
    qint64 pixels = 0;
    if (monitors)
        for (auto i = xcb_randr_get_monitors_monitors_iterator(monitors.get()); i.rem > 0;
             xcb_randr_monitor_info_next(&i))
            pixels += qint64{i.data->width} * i.data->height;
    return pixels;
}

}  // namespace

bool isXwaylandMagnified() {
    const std::vector<Screen> screens = screensOfCompositor();
    const bool isAnyDense =
        std::any_of(screens.begin(), screens.end(), [](const Screen& screen) { return screen.scale > 1; });
    // Asked only then, because the question starts an X server where none runs yet.
    return isAnyDense &&
        pixelsOfX11() < std::accumulate(
                            screens.begin(), screens.end(), qint64{0},
                            [](qint64 sum, const Screen& screen) { return sum + screen.pixels(); });
}

std::vector<QSize> compositorScreens() {
    std::vector<QSize> sizes;
    for (const Screen& screen : screensOfCompositor())
        sizes.push_back(screen.size / std::max(screen.scale, 1));
    return sizes;
}

}  // namespace tralio
