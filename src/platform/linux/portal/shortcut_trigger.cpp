#include "platform/linux/portal/shortcut_trigger.h"

namespace tralio {
namespace {

/// This order must stay: it is part of a shortcut's name, and the desktop stores the user's key under that
/// name.
constexpr Modifier order[] = {Modifier::control, Modifier::option, Modifier::command, Modifier::shift};

}  // namespace

std::optional<QString> shortcutTrigger(const KeyCombination& combination) {
    const Key* key = keyWith(combination.key);
    if (!key || !key->name)
        return std::nullopt;
    QString trigger;
    for (const Modifier modifier : order) {
        for (const ModifierNames& names : modifierNames)
            if (names.modifier == modifier && combination.modifiers.testFlag(modifier))
                trigger += QLatin1String(names.name) + u'+';
    }
    return trigger + QLatin1String(key->name);
}

}  // namespace tralio
