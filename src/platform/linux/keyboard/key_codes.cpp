#include "platform/linux/keyboard/key_codes.h"

#include <algorithm>
#include <array>

namespace tralio {
namespace {

constexpr quint8 none = 0;

/// The evdev codes (linux/input-event-codes.h) by virtual key code, sixteen to a row.
constexpr std::array<quint8, 128> evdevCodes{// A S D F H G Z X, C V (ISO section) B Q W E R
    30, 31, 32, 33, 35, 34, 44, 45, 46, 47, 86, 48, 16, 17, 18, 19,
    // Y T 1 2 3 4 6 5, = 9 7 - 8 0 ] O
    21, 20, 2, 3, 4, 5, 7, 6, 13, 10, 8, 12, 9, 11, 27, 24,
    // U [ I P Return L J ', K ; \ , / N M .
    22, 26, 23, 25, 28, 38, 36, 40, 37, 39, 43, 51, 53, 49, 50, 52,
    // Tab Space ` Backspace (none) Escape RightCommand LeftCommand, Shift CapsLock Option Control
    // RightShift RightOption RightControl Function
    15, 57, 41, 14, none, 1, 126, 125, 42, 58, 56, 29, 54, 100, 97, none,
    // F17 keypad: . (none) * (none) + (none) NumLock, VolumeUp VolumeDown Mute / Enter (none) - F18
    187, 83, none, 55, none, 78, none, 69, 115, 114, 113, 98, 96, none, 74, 188,
    // F19 keypad: = 0 1 2 3 4 5, 6 7 F20 8 9 (JIS yen) (JIS _) (JIS keypad comma)
    189, 117, 82, 79, 80, 81, 75, 76, 77, 71, 190, 72, 73, 124, 89, 95,
    // F5 F6 F7 F3 F8 F9 (JIS eisu) F11, (JIS kana) F13 F16 F14 (none) F10 Menu F12
    63, 64, 65, 61, 66, 67, 123, 87, 122, 183, 186, 184, none, 68, 127, 88,
    // (none) F15 Insert/Help Home PageUp ForwardDelete F4 End, F2 PageDown F1 Left Right Down Up (none)
    none, 185, 110, 102, 104, 111, 62, 107, 60, 109, 59, 105, 106, 108, 103, none};

/// X key codes leave out the first eight numbers.
constexpr quint8 x11Offset = 8;

}  // namespace

std::optional<quint8> evdevKeyCode(quint32 virtualKeyCode) {
    if (virtualKeyCode >= evdevCodes.size() || evdevCodes[virtualKeyCode] == none)
        return std::nullopt;
    return evdevCodes[virtualKeyCode];
}

std::optional<quint8> x11KeyCode(quint32 virtualKeyCode) {
    const auto code = evdevKeyCode(virtualKeyCode);
    return code ? std::optional(static_cast<quint8>(*code + x11Offset)) : std::nullopt;
}

std::optional<quint16> virtualKeyCode(quint32 x11KeyCode) {
    const auto* const found = x11KeyCode <= x11Offset
        ? evdevCodes.end()
        : std::find(evdevCodes.begin(), evdevCodes.end(), x11KeyCode - x11Offset);
    if (found == evdevCodes.end())
        return std::nullopt;
    return static_cast<quint16>(found - evdevCodes.begin());
}

}  // namespace tralio
