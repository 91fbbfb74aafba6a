#pragma once

#include <QString>

#include <optional>

namespace tralio {

class KeyEventPoster;
class ScriptRunner;
struct KeyCombination;

// What the selected-text fetch says in the words of a desktop that runs AppleScript. No desktop that this
// program runs on executes any of it: the platform's script runner answers a browser's script in its own way,
// and ignores the rest.

/// The script that asks the front tab of a browser for its selection; absent for what is no browser.
[[nodiscard]] std::optional<QString> browserSelectionScript(const QString& bundleId);

/// Presses the copy shortcut in one process only.
void pressInProcess(KeyEventPoster& keyEvents, qint32 processId, const KeyCombination& copy);

/// Has the script runner press the copy shortcut.
void launchCopyScript(ScriptRunner& scripts);

}  // namespace tralio
