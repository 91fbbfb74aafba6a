#include "desktop/virtual_pointer.h"

#include <stdexcept>
#include <utility>
#include <wayland-client-protocol.h>

#include "platform/linux/wayland/wayland_proxy.h"

namespace tralio {
namespace {

// As much of the protocol as is used, as libwayland wants it described.
extern const wl_interface pointerInterface;
const wl_interface* noTypes[5] = {};
const wl_interface* createTypes[] = {&wl_seat_interface, &pointerInterface};

const wl_message pointerRequests[] = {{"motion", "uff", noTypes}, {"motion_absolute", "uuuuu", noTypes},
    {"button", "uuu", noTypes}, {"axis", "uuf", noTypes}, {"frame", "", noTypes},
    {"axis_source", "u", noTypes}, {"axis_stop", "uu", noTypes}, {"axis_discrete", "uufi", noTypes},
    {"destroy", "", noTypes}};
constexpr quint32 motionAbsolute = 1;
constexpr quint32 button = 2;
constexpr quint32 frameRequest = 4;
constexpr quint32 destroyPointer = 8;

const wl_interface pointerInterface{"zwlr_virtual_pointer_v1", 1, 9, pointerRequests, 0, nullptr};

const wl_message managerRequests[] = {
    {"create_virtual_pointer", "?on", createTypes}, {"destroy", "", noTypes}};
const wl_interface managerInterface{"zwlr_virtual_pointer_manager_v1", 1, 2, managerRequests, 0, nullptr};

}  // namespace

VirtualPointer::VirtualPointer(WaylandConnection& connection, const QSize& screen)
    : m_connection(connection), m_screen(screen) {
    const auto seat = connection.bind(wl_seat_interface, 1);
    const auto manager = connection.bind(managerInterface, 1);
    if (!seat || !manager)
        throw std::runtime_error("the compositor gives no virtual pointer");
    constexpr void* newObject = nullptr;
    m_pointer = makeObject(manager.get(), 0, pointerInterface, seat.get(), newObject);
    m_time.start();
    m_connection.flush();
}

VirtualPointer::~VirtualPointer() {
    destroyObject(std::move(m_pointer), destroyPointer);
    m_connection.flush();
}

void VirtualPointer::move(const QPoint& place) {
    sendRequest(m_pointer.get(), motionAbsolute, now(), static_cast<quint32>(place.x()),
        static_cast<quint32>(place.y()), static_cast<quint32>(m_screen.width()),
        static_cast<quint32>(m_screen.height()));
    frame();
}

void VirtualPointer::setButton(bool down) {
    constexpr quint32 left = 0x110;
    sendRequest(m_pointer.get(), button, now(), left, quint32{down});
    frame();
}

void VirtualPointer::frame() {
    sendRequest(m_pointer.get(), frameRequest);
    m_connection.sync(QDeadlineTimer(1000));
}

}  // namespace tralio
