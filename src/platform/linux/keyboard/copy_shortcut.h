#pragma once

#include <QStringList>

#include <optional>

namespace tralio {

/// The shortcut that copies an application's selection. In a terminal Control+C would interrupt what runs
/// there.
enum class CopyShortcut { control, controlShift, none };

/// What is known of the application that would get the keys.
struct CopyTarget {
    /// Its names: application ids, class and instance of its window, name of its process.
    QStringList names;
    /// Whether the element with the focus is a terminal; absent where there is no reliable answer.
    std::optional<bool> focusIsTerminal;
    /// Whether its process, or one that this has started, serves a terminal; absent if the process is
    /// unknown.
    std::optional<bool> servesTerminal;
};

/// Control+C only where something shows that the target is no terminal; `none` for terminals not known by
/// name.
[[nodiscard]] CopyShortcut copyShortcutIn(const CopyTarget& target);

/// Whether one of these names is of a program in which Control+C does something else than copying, and may
/// change the meaning of the next key, or passes it on to another machine, where it may interrupt what runs
/// in a terminal. What can be had of their selections is in PRIMARY.
[[nodiscard]] bool hasOtherKeys(const QStringList& names);

}  // namespace tralio
