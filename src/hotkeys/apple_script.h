#pragma once

#include <QString>

#include <optional>

namespace tralio {

class KeyEventPoster;
class ScriptRunner;
struct KeyCombination;

// The parts of the selected-text fetch that are specified for a desktop with AppleScript. No desktop that
// this program runs on executes the scripts: the platform's script runner answers a browser's script in its
// own way, and ignores the rest.

/// The script that asks the front tab of a browser for its selection; absent if the application is no
/// browser.
[[nodiscard]] std::optional<QString> browserSelectionScript(const QString& bundleId);

/// Presses the copy shortcut in one process.
void pressInProcess(KeyEventPoster& keyEvents, qint32 processId, const KeyCombination& copy);

/// Makes the script runner press the copy shortcut.
void launchCopyScript(ScriptRunner& scripts);

}  // namespace tralio
