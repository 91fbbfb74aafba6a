#include "platform/linux/wayland/compositor_screens.h"

#include <array>
#include <wayland-client-protocol.h>

#include "platform/linux/wayland/wayland_connection.h"
#include "platform/linux/wayland/wayland_proxy.h"

namespace tralio {
namespace {

CompositorScreen& screen(void* data) {
    return *static_cast<CompositorScreen*>(data);
}

// The events of wl_output, versions 1 and 2.
constexpr wl_output_listener outputListener{
    .geometry = [](void*, wl_output*, qint32, qint32, qint32, qint32, qint32, const char*, const char*,
                    qint32) {},
    .mode =
        [](void* data, wl_output*, quint32 flags, qint32 width, qint32 height, qint32 /*refresh*/) {
            if (flags & WL_OUTPUT_MODE_CURRENT)
                screen(data).pixels = QSize(width, height);
        },
    .done = [](void*, wl_output*) {},
    .scale = [](void* data, wl_output*, qint32 factor) { screen(data).scale = factor; },
    .name = nullptr,
    .description = nullptr,
};

// xdg-output, version 1: the same data as wl_output, but after rotation and scaling.
constexpr std::array<const wl_interface*, 2> noTypes{};
extern const wl_interface xdgOutput;
constexpr std::array<const wl_interface*, 2> outputTypes{&xdgOutput, &wl_output_interface};
constexpr std::array<wl_message, 2> managerRequests{
    {{"destroy", "", const_cast<const wl_interface**>(noTypes.data())},
        {"get_xdg_output", "no", const_cast<const wl_interface**>(outputTypes.data())}}};
constexpr std::array<wl_message, 1> xdgOutputRequests{
    {{"destroy", "", const_cast<const wl_interface**>(noTypes.data())}}};
constexpr std::array<wl_message, 3> xdgOutputEvents{
    {{"logical_position", "ii", const_cast<const wl_interface**>(noTypes.data())},
        {"logical_size", "ii", const_cast<const wl_interface**>(noTypes.data())},
        {"done", "", const_cast<const wl_interface**>(noTypes.data())}}};
const wl_interface xdgOutputManager{
    "zxdg_output_manager_v1", 1, managerRequests.size(), managerRequests.data(), 0, nullptr};
const wl_interface xdgOutput{"zxdg_output_v1", 1, xdgOutputRequests.size(), xdgOutputRequests.data(),
    xdgOutputEvents.size(), xdgOutputEvents.data()};
constexpr quint32 getXdgOutput = 1;

struct XdgOutputListener {
    void (*position)(void*, wl_proxy*, qint32, qint32);
    void (*size)(void*, wl_proxy*, qint32, qint32);
    void (*done)(void*, wl_proxy*);
};
constexpr XdgOutputListener xdgOutputListener{
    .position = [](void*, wl_proxy*, qint32, qint32) {},
    .size = [](void* data, wl_proxy*, qint32 width,
                qint32 height) { screen(data).size = QSize(width, height); },
    .done = [](void*, wl_proxy*) {},
};

}  // namespace

std::vector<CompositorScreen> compositorScreens() {
    const auto connection = WaylandConnection::greet();
    if (!connection)
        return {};
    const auto outputs = connection->bindAll(wl_output_interface, 2);
    const WaylandObject manager = connection->bind(xdgOutputManager, 1);
    std::vector<CompositorScreen> screens(outputs.size());
    std::vector<WaylandObject> xdgOutputs;
    for (size_t i = 0; i < outputs.size(); ++i) {
        addListener(outputs[i].get(), outputListener, &screens[i]);
        if (!manager)
            continue;
        xdgOutputs.push_back(makeObject(manager.get(), getXdgOutput, xdgOutput, nullptr, outputs[i].get()));
        addListener(xdgOutputs.back().get(), xdgOutputListener, &screens[i]);
    }
    connection->sync(QDeadlineTimer(WaylandConnection::greetingLimit));
    return screens;
}

}  // namespace tralio
