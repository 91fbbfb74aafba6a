#include "platform/linux/keyboard/key_codes.h"

namespace tralio {
namespace {

/// X key codes are evdev codes plus 8.
constexpr quint8 x11Offset = 8;

}  // namespace

std::optional<quint8> x11KeyCode(KeyCode key) {
    const Key* found = keyWith(key);
    return found ? std::optional(static_cast<quint8>(found->evdev + x11Offset)) : std::nullopt;
}

std::optional<KeyCode> keyWithX11Code(quint32 x11KeyCode) {
    const Key* found = keyAtEvdev(x11KeyCode - x11Offset);
    return found ? std::optional(found->code) : std::nullopt;
}

}  // namespace tralio
