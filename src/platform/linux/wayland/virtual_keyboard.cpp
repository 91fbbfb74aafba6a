#include "platform/linux/wayland/virtual_keyboard.h"

#include <QByteArray>

#include <linux/input-event-codes.h>
#include <sys/mman.h>
#include <unistd.h>
#include <utility>
#include <wayland-client-protocol.h>

#include "platform/linux/wayland/wayland_proxy.h"

namespace tralio {
namespace {

// The virtual-keyboard protocol, as a table for libwayland.
extern const wl_interface keyboardInterface;
const wl_interface* noKeyboardTypes[4] = {};
const wl_interface* createTypes[] = {&wl_seat_interface, &keyboardInterface};

const wl_message keyboardRequests[] = {{"keymap", "uhu", noKeyboardTypes}, {"key", "uuu", noKeyboardTypes},
    {"modifiers", "uuuu", noKeyboardTypes}, {"destroy", "", noKeyboardTypes}};
constexpr quint32 keymapRequest = 0;
constexpr quint32 keyRequest = 1;
constexpr quint32 modifiersRequest = 2;
constexpr quint32 destroyRequest = 3;

const wl_interface keyboardInterface{"zwp_virtual_keyboard_v1", 1, 4, keyboardRequests, 0, nullptr};

const wl_message keyboardManagerRequests[] = {{"create_virtual_keyboard", "on", createTypes}};
const wl_interface keyboardManagerInterface{
    "zwp_virtual_keyboard_manager_v1", 1, 1, keyboardManagerRequests, 0, nullptr};

/// The compositor has the included parts.
constexpr auto keymap =
    "xkb_keymap {\n"
    "xkb_keycodes { include \"evdev+aliases(qwerty)\" };\n"
    "xkb_types { include \"complete\" };\n"
    "xkb_compat { include \"complete\" };\n"
    "xkb_symbols { include \"pc+us+inet(evdev)\" };\n"
    "};\n";

/// The bit of a modifier key in the modifier state of that keymap; zero for other keys.
quint32 modifierOf(quint32 code) {
    switch (code) {
        case KEY_LEFTSHIFT:
        case KEY_RIGHTSHIFT:
            return 1U << 0;  // Shift
        case KEY_LEFTCTRL:
        case KEY_RIGHTCTRL:
            return 1U << 2;  // Control
        case KEY_LEFTALT:
        case KEY_RIGHTALT:
            return 1U << 3;  // Alt
        case KEY_LEFTMETA:
        case KEY_RIGHTMETA:
            return 1U << 6;  // Super
        default:
            return 0;
    }
}

}  // namespace

std::unique_ptr<VirtualKeyboard> VirtualKeyboard::open(WaylandConnection& connection) {
    auto seat = connection.bind(wl_seat_interface, 1);
    const auto manager = connection.bind(keyboardManagerInterface, 1);
    if (!seat || !manager)
        return nullptr;
    constexpr void* newObject = nullptr;
    auto keyboard = makeObject(manager.get(), 0, keyboardInterface, seat.get(), newObject);
    return std::unique_ptr<VirtualKeyboard>(
        new VirtualKeyboard(connection, std::move(seat), std::move(keyboard)));
}

VirtualKeyboard::VirtualKeyboard(WaylandConnection& connection, WaylandObject seat, WaylandObject keyboard)
    : m_connection(connection), m_seat(std::move(seat)), m_keyboard(std::move(keyboard)) {
    m_time.start();
    sendKeymap();
}

VirtualKeyboard::~VirtualKeyboard() {
    destroyObject(std::move(m_keyboard), destroyRequest);
    m_connection.flush();
}

void VirtualKeyboard::sendKeymap() {
    const QByteArray text = QByteArray(keymap) + '\0';
    const int file = memfd_create("keymap", MFD_CLOEXEC);
    const bool written = file >= 0 &&
        write(file, text.constData(), static_cast<size_t>(text.size())) == static_cast<ssize_t>(text.size());
    if (written)
        sendRequest(m_keyboard.get(), keymapRequest, quint32{WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1}, file,
            static_cast<quint32>(text.size()));
    m_connection.flush();
    close(file);
}

void VirtualKeyboard::setKey(quint32 code, bool down) {
    const auto time = static_cast<quint32>(m_time.elapsed());
    sendRequest(m_keyboard.get(), keyRequest, time, code, quint32{down});
    if (const quint32 modifier = modifierOf(code)) {
        m_modifiers = down ? m_modifiers | modifier : m_modifiers & ~modifier;
        constexpr quint32 none = 0;
        sendRequest(m_keyboard.get(), modifiersRequest, m_modifiers, none, none, none);
    }
    m_connection.flush();
}

}  // namespace tralio
