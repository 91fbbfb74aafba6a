#include "platform/linux/keyboard/hot_key_rules.h"

#include <algorithm>
#include <array>

namespace tralio {
namespace {

constexpr quint32 commandOptionControl = 256 | 2048 | 4096;

/// F1 to F20, which may stand alone.
constexpr std::array<quint32, 20> functionKeys{
    122, 120, 99, 118, 96, 97, 98, 100, 101, 109, 103, 111, 105, 107, 113, 106, 64, 79, 80, 90};

}  // namespace

bool canBeHotKey(quint32 keyCode, quint32 modifiers) {
    return (modifiers & commandOptionControl) ||
        std::find(functionKeys.begin(), functionKeys.end(), keyCode) != functionKeys.end();
}

}  // namespace tralio
