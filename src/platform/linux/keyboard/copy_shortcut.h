#pragma once

#include <QString>

namespace tralio {

/// How an application copies its selection by the keyboard. In a terminal Control+C would interrupt what runs
/// there.
enum class CopyShortcut { control, controlShift, none };

/// `application` is its id or the class of its windows.
[[nodiscard]] CopyShortcut copyShortcutIn(const QString& application);

}  // namespace tralio
