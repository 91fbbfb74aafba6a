#include "platform/linux/wayland/magnified_xwayland.h"

#include <algorithm>
#include <memory>
#include <numeric>
#include <xcb/randr.h>

#include "platform/linux/wayland/compositor_screens.h"
#include "platform/linux/x11/x11_connection.h"

namespace tralio {
namespace {

/// The number of pixels of all monitors together.
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
    const std::vector<CompositorScreen> screens = compositorScreens();
    const bool isAnyDense = std::any_of(
        screens.begin(), screens.end(), [](const CompositorScreen& screen) { return screen.scale > 1; });
    // Asked last, since it would start an X server where none runs yet.
    return isAnyDense &&
        pixelsOfX11() < std::accumulate(
                            screens.begin(), screens.end(), qint64{0},
                            [](qint64 sum, const CompositorScreen& screen) {
                                return sum + qint64{screen.pixels.width()} * screen.pixels.height();
                            });
}

}  // namespace tralio
