#pragma once

#include <QStringList>

#include <optional>

namespace tralio {

/// How an application copies its selection by the keyboard. In a terminal Control+C would interrupt what runs
/// there.
enum class CopyShortcut { control, controlShift, none };

/// What is known of the application that would get the keys.
struct CopyTarget {
    /// What it goes by: its ids, the class and the instance of its window, the program of its process.
    QStringList names;
    /// Whether the element with the focus is a terminal; absent where nobody tells whose word counts.
    std::optional<bool> focusIsTerminal;
    /// Whether its process serves a terminal, or has one served; absent where the process is not known.
    std::optional<bool> servesTerminal;
};

/// Control+C only into what is told to be no terminal, nothing into a terminal that is not known by name.
[[nodiscard]] CopyShortcut copyShortcutIn(const CopyTarget& target);

/// Whether one of these names is that of a program in which Control+C begins or ends something else, and may
/// be what the next key is taken for. The marks of such programs are the PRIMARY selection.
[[nodiscard]] bool hasOtherKeys(const QStringList& names);

}  // namespace tralio
