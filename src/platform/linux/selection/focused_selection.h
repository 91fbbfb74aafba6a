#pragma once

#include <QObject>

#include <chrono>
#include <functional>
#include <optional>

#include "hotkeys/late_selection.h"

namespace tralio {

/// The PRIMARY selection in sessions that show it only to the program with the keyboard focus. It can be read
/// once a window of ours has come to the front, but neither its owner nor its age is known. A text that was
/// there the last time, and was not selected anew, is a left-over and is not reported; nor is one that looks
/// like a password. A single word, which may be one, is offered, and so is what was selected some time ago,
/// perhaps in another application.
class FocusedSelection final : public QObject {
    Q_OBJECT

public:
    /// Calls `deliver` once a window of ours has the focus, or with an empty selection if that takes over a
    /// second. Only the last request is answered.
    void read(std::function<void(const LateSelection&)> deliver);

    /// Reads the text. If it is not set, Qt reads, and blocks for seconds if the owner hangs. Not called
    /// while the selection is this program's own.
    std::function<std::optional<QString>()> readText;

    /// Something has been selected, maybe the same text again; for sessions that report this.
    void noteChange() { m_changed = now(); }

    /// The time on a monotonic clock.
    std::function<std::chrono::milliseconds()> now = [] {
        return std::chrono::duration_cast<std::chrono::milliseconds>(
            std::chrono::steady_clock::now().time_since_epoch());
    };

private:
    void take();

    [[nodiscard]] LateSelection look();

    std::function<void(const LateSelection&)> m_deliver;
    std::optional<QString> m_lastSeen;
    std::optional<std::chrono::milliseconds> m_changed;  ///< since the last look
    quint64 m_request = 0;
};

}  // namespace tralio
