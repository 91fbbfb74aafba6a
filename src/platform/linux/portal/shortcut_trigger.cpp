#include "platform/linux/portal/shortcut_trigger.h"

#include <array>

namespace tralio {
namespace {

/// Names of keys (xkbcommon's) by virtual key code, sixteen to a row; null where there is none.
constexpr std::array<const char*, 128> keyNames{"a", "s", "d", "f", "h", "g", "z", "x", "c", "v", nullptr,
    "b", "q", "w", "e", "r", "y", "t", "1", "2", "3", "4", "6", "5", "equal", "9", "7", "minus", "8", "0",
    "bracketright", "o", "u", "bracketleft", "i", "p", "Return", "l", "j", "apostrophe", "k", "semicolon",
    "backslash", "comma", "slash", "n", "m", "period", "Tab", "space", "grave", "BackSpace", nullptr,
    "Escape", nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, "F17",
    "KP_Decimal", nullptr, "KP_Multiply", nullptr, "KP_Add", nullptr, nullptr, nullptr, nullptr, nullptr,
    "KP_Divide", "KP_Enter", nullptr, "KP_Subtract", "F18", "F19", "KP_Equal", "KP_0", "KP_1", "KP_2", "KP_3",
    "KP_4", "KP_5", "KP_6", "KP_7", "F20", "KP_8", "KP_9", nullptr, nullptr, nullptr, "F5", "F6", "F7", "F3",
    "F8", "F9", nullptr, "F11", nullptr, "F13", "F16", "F14", nullptr, "F10", "Menu", "F12", nullptr, "F15",
    "Insert", "Home", "Page_Up", "Delete", "F4", "End", "F2", "Page_Down", "F1", "Left", "Right", "Down",
    "Up", nullptr};

struct Modifier {
    quint32 mask;
    const char* name;
};

constexpr std::array modifierNames{
    Modifier{4096, "CTRL+"}, Modifier{2048, "ALT+"}, Modifier{256, "LOGO+"}, Modifier{512, "SHIFT+"}};

}  // namespace

std::optional<QString> shortcutTrigger(quint32 keyCode, quint32 modifiers) {
    if (keyCode >= keyNames.size() || !keyNames[keyCode])
        return std::nullopt;
    QString trigger;
    for (const Modifier& modifier : modifierNames)
        if (modifiers & modifier.mask)
            trigger += QLatin1String(modifier.name);
    return trigger + QLatin1String(keyNames[keyCode]);
}

}  // namespace tralio
