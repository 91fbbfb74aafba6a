#include "platform/linux/wayland/magnified_xwayland.h"

#include <algorithm>
#include <memory>
#include <numeric>
#include <wayland-client-protocol.h>
#include <xcb/xcb.h>

#include "platform/linux/wayland/wayland_connection.h"
#include "platform/linux/wayland/wayland_proxy.h"

namespace tralio {
namespace {

/// Milliseconds.
constexpr int answerLimit = 1000;

struct Screen {
    qint64 pixels = 0;
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
                screen(data).pixels = qint64{width} * height;
        },
    .done = [](void*, wl_output*) {},
    .scale = [](void* data, wl_output*, qint32 factor) { screen(data).scale = factor; },
    .name = nullptr,
    .description = nullptr,
};

std::vector<Screen> screensOfCompositor() {
    const auto connection = WaylandConnection::greet(answerLimit);
    if (!connection)
        return {};
    const auto outputs = connection->bindAll(wl_output_interface, 2);
    std::vector<Screen> screens(outputs.size());
    for (size_t i = 0; i < outputs.size(); ++i)
        addListener(outputs[i].get(), screenListener, &screens[i]);
    connection->sync(QDeadlineTimer(answerLimit));
    return screens;
}

/// Of all screens together, and of what is between them.
qint64 pixelsOfX11() {
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(
        xcb_connect(nullptr, nullptr), &xcb_disconnect);
    if (xcb_connection_has_error(connection.get()))
        return 0;
    const xcb_screen_t* root = xcb_setup_roots_iterator(xcb_get_setup(connection.get())).data;
    return qint64{root->width_in_pixels} * root->height_in_pixels;
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
                               [](qint64 sum, const Screen& screen) { return sum + screen.pixels; });
}

}  // namespace tralio
