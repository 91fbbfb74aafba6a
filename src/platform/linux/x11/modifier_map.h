#pragma once

#include <vector>

#include "hotkeys/keys.h"
#include "platform/linux/x11/x11_connection.h"

namespace tralio {

/// Which bits of a key event's state stand for which modifiers, in the current mapping of the keyboard.
class ModifierMap {
public:
    explicit ModifierMap(const X11Connection& connection);

    /// The state bits of modifiers. Command is Super and Option is Alt.
    [[nodiscard]] quint16 stateFor(Modifiers modifiers) const;

    /// The bits that distinguish hot keys; all others, such as the locks, are ignored.
    [[nodiscard]] quint16 significant() const;

    /// Every subset of those bits, the empty one first.
    [[nodiscard]] std::vector<quint16> significantCombinations() const;

    bool operator==(const ModifierMap&) const = default;

    /// `state` with every combination of the locks (Caps, Num, Scroll) that can be on while a hot key is
    /// pressed.
    [[nodiscard]] std::vector<quint16> withLocks(quint16 state) const;

private:
    quint16 m_super = 0;
    quint16 m_alt = 0;
    std::vector<quint16> m_lockCombinations;
};

}  // namespace tralio
