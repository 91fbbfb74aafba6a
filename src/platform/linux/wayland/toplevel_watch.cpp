#include "platform/linux/wayland/toplevel_watch.h"

#include <algorithm>

#include "platform/linux/wayland/wayland_proxy.h"

namespace tralio {
namespace {

// The protocol's first version, as libwayland wants it described.
extern const wl_interface handleInterface;
const wl_interface* noTypes[5] = {};
const wl_interface* handleType[1] = {&handleInterface};

const wl_message handleRequests[] = {{"set_maximized", "", noTypes}, {"unset_maximized", "", noTypes},
    {"set_minimized", "", noTypes}, {"unset_minimized", "", noTypes}, {"activate", "o", noTypes},
    {"close", "", noTypes}, {"set_rectangle", "oiiii", noTypes}, {"destroy", "", noTypes}};
constexpr quint32 destroyHandle = 7;

const wl_message handleEvents[] = {{"title", "s", noTypes}, {"app_id", "s", noTypes},
    {"output_enter", "o", noTypes}, {"output_leave", "o", noTypes}, {"state", "a", noTypes},
    {"done", "", noTypes}, {"closed", "", noTypes}};

const wl_interface handleInterface{"zwlr_foreign_toplevel_handle_v1", 1, 8, handleRequests, 7, handleEvents};

const wl_message managerRequests[] = {{"stop", "", noTypes}};
const wl_message managerEvents[] = {{"toplevel", "n", handleType}, {"finished", "", noTypes}};
const wl_interface managerInterface{
    "zwlr_foreign_toplevel_manager_v1", 1, 1, managerRequests, 2, managerEvents};

constexpr quint32 activated = 2;

ToplevelWatch& self(void* data) {
    return *static_cast<ToplevelWatch*>(data);
}

}  // namespace

// What the compositor tells, in the order of the protocol.
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
        self(data).m_windows[window].arrivingAppId = QString::fromUtf8(appId);
    },
    [](void*, wl_proxy*, wl_proxy*) {},
    [](void*, wl_proxy*, wl_proxy*) {},
    [](void* data, wl_proxy* window, wl_array* states) {
        const auto* first = static_cast<const quint32*>(states->data);
        const auto* last = first + states->size / sizeof(quint32);
        self(data).m_windows[window].arrivingActive = std::find(first, last, activated) != last;
    },
    [](void* data, wl_proxy* window) { self(data).done(window); },
    [](void* data, wl_proxy* window) { self(data).closed(window); },
};

const ToplevelWatch::ManagerListener ToplevelWatch::managerListener{
    [](void* data, wl_proxy*, wl_proxy* window) {
        self(data).m_windows.insert(window, {});
        addListener(window, handleListener, data);
    },
    [](void* data, wl_proxy*) { self(data).forgetWindows(); },
};

std::unique_ptr<ToplevelWatch> ToplevelWatch::open(WaylandConnection& connection) {
    auto manager = connection.bind(managerInterface, 1);
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
    // Another window's turn may have been told before.
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
