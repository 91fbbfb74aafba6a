#include "platform/linux/wayland/toplevel_watch.h"

#include <algorithm>

#include "platform/linux/wayland/wayland_proxy.h"

namespace tralio {
namespace {

// Version 1 of the protocol, as a table for libwayland.
extern const wl_interface toplevelInterface;
const wl_interface* noToplevelTypes[5] = {};
const wl_interface* toplevelType[1] = {&toplevelInterface};

const wl_message toplevelRequests[] = {{"set_maximized", "", noToplevelTypes},
    {"unset_maximized", "", noToplevelTypes}, {"set_minimized", "", noToplevelTypes},
    {"unset_minimized", "", noToplevelTypes}, {"activate", "o", noToplevelTypes},
    {"close", "", noToplevelTypes}, {"set_rectangle", "oiiii", noToplevelTypes},
    {"destroy", "", noToplevelTypes}};
constexpr quint32 destroyHandle = 7;

const wl_message toplevelEvents[] = {{"title", "s", noToplevelTypes}, {"app_id", "s", noToplevelTypes},
    {"output_enter", "o", noToplevelTypes}, {"output_leave", "o", noToplevelTypes},
    {"state", "a", noToplevelTypes}, {"done", "", noToplevelTypes}, {"closed", "", noToplevelTypes}};

const wl_interface toplevelInterface{
    "zwlr_foreign_toplevel_handle_v1", 1, 8, toplevelRequests, 7, toplevelEvents};

const wl_message toplevelManagerRequests[] = {{"stop", "", noToplevelTypes}};
const wl_message toplevelManagerEvents[] = {
    {"toplevel", "n", toplevelType}, {"finished", "", noToplevelTypes}};
const wl_interface toplevelManagerInterface{
    "zwlr_foreign_toplevel_manager_v1", 1, 1, toplevelManagerRequests, 2, toplevelManagerEvents};

constexpr quint32 activated = 2;

ToplevelWatch& watchOf(void* data) {
    return *static_cast<ToplevelWatch*>(data);
}

}  // namespace

// The compositor's events, in the order of the protocol.
struct ToplevelWatch::ManagerListener {
    void (*toplevel)(void*, wl_proxy*, wl_proxy* window);
    void (*finished)(void*, wl_proxy*);
};

struct ToplevelWatch::HandleListener {
    void (*title)(void*, wl_proxy*, const char* title);
    void (*appId)(void*, wl_proxy* window, const char* appId);
    void (*outputEnter)(void*, wl_proxy*, wl_proxy* output);
    void (*outputLeave)(void*, wl_proxy*, wl_proxy* output);
    void (*state)(void*, wl_proxy* window, wl_array* states);
    void (*done)(void*, wl_proxy* window);
    void (*closed)(void*, wl_proxy* window);
};

const ToplevelWatch::HandleListener ToplevelWatch::handleListener{
    [](void*, wl_proxy*, const char*) {},
    [](void* data, wl_proxy* window, const char* appId) {
        watchOf(data).m_windows[window].arrivingAppId = QString::fromUtf8(appId);
    },
    [](void*, wl_proxy*, wl_proxy*) {},
    [](void*, wl_proxy*, wl_proxy*) {},
    [](void* data, wl_proxy* window, wl_array* states) {
        const auto* first = static_cast<const quint32*>(states->data);
        const auto* last = first + states->size / sizeof(quint32);
        watchOf(data).m_windows[window].arrivingActive = std::find(first, last, activated) != last;
    },
    [](void* data, wl_proxy* window) { watchOf(data).done(window); },
    [](void* data, wl_proxy* window) { watchOf(data).closed(window); },
};

const ToplevelWatch::ManagerListener ToplevelWatch::managerListener{
    [](void* data, wl_proxy*, wl_proxy* window) {
        watchOf(data).m_windows.insert(window, {});
        addListener(window, handleListener, data);
    },
    [](void* data, wl_proxy*) { watchOf(data).forgetWindows(); },
};

std::unique_ptr<ToplevelWatch> ToplevelWatch::open(WaylandConnection& connection) {
    auto manager = connection.bind(toplevelManagerInterface, 1);
    return manager ? std::unique_ptr<ToplevelWatch>(new ToplevelWatch(std::move(manager))) : nullptr;
}

ToplevelWatch::ToplevelWatch(WaylandObject manager) : m_manager(std::move(manager)) {
    addListener(m_manager.get(), managerListener, this);
}

ToplevelWatch::~ToplevelWatch() {
    forgetWindows();
}

void ToplevelWatch::forgetWindows() {
    while (!m_windows.isEmpty())
        closed(m_windows.cbegin().key());
}

void ToplevelWatch::done(wl_proxy* window) {
    Window& known = m_windows[window];
    known.appId = known.arrivingAppId;
    // The activation of another window may have been reported before.
    if (known.arrivingActive)
        m_active = window;
    else if (m_active == window)
        m_active = nullptr;
}

void ToplevelWatch::closed(wl_proxy* window) {
    if (m_active == window)
        m_active = nullptr;
    m_windows.remove(window);
    destroyObject(WaylandObject(window), destroyHandle);
}

}  // namespace tralio
