#pragma once

#include <wayland-client-core.h>

#include "platform/linux/wayland/wayland_connection.h"

namespace tralio {

// Requests and events of the protocols that are described by our own tables. Arguments are passed as
// libwayland's C interface takes them, according to the request's signature.

template <typename... Arguments>
void sendRequest(wl_proxy* object, quint32 number, Arguments... arguments) {
    wl_proxy_marshal_flags(object, number, nullptr, wl_proxy_get_version(object), 0, arguments...);
}

/// Sends a request that creates an object; pass `nullptr` for it among the arguments.
template <typename... Arguments>
[[nodiscard]] WaylandObject makeObject(
    wl_proxy* object, quint32 number, const wl_interface& interface, Arguments... arguments) {
    return WaylandObject(
        wl_proxy_marshal_flags(object, number, &interface, wl_proxy_get_version(object), 0, arguments...));
}

/// Sends a destructor request.
inline void destroyObject(WaylandObject object, quint32 number) {
    wl_proxy* raw = object.release();
    wl_proxy_marshal_flags(raw, number, nullptr, wl_proxy_get_version(raw), WL_MARSHAL_FLAG_DESTROY);
}

/// `listener` is a table of functions in the order of the protocol's events; it outlives the object.
template <typename Listener>
void addListener(wl_proxy* object, const Listener& listener, void* data) {
    auto* functions = reinterpret_cast<void (**)()>(const_cast<Listener*>(&listener));
    wl_proxy_add_listener(object, functions, data);
}

}  // namespace tralio
