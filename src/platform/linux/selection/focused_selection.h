#pragma once

#include <QObject>

#include <functional>
#include <optional>

#include "hotkeys/late_selection.h"

namespace tralio {

/// The PRIMARY selection in sessions that show it only to the program with the keyboard focus: it can be read
/// when a window of ours has come to the front, but not whose it is, nor since when. A text that was there
/// the last time, and was not selected anew, is a left-over, and one that looks like a password is left
/// alone.
class FocusedSelection final : public QObject {
    Q_OBJECT

public:
    /// Calls `deliver` once a window of ours has the focus, or with nothing when that takes over a second.
    /// Only the last request counts.
    void read(std::function<void(const LateSelection&)> deliver);

    /// How the text is read; by the toolkit, which waits for a hung owner for seconds, where nothing is set.
    /// Not called while the selection is this program's.
    std::function<std::optional<QString>()> readText;

    /// Something has been selected, be it the same text: for a session that tells so.
    void noteChange() { m_isChanged = true; }

private:
    void take();

    [[nodiscard]] LateSelection look();

    std::function<void(const LateSelection&)> m_deliver;
    std::optional<QString> m_lastSeen;
    bool m_isChanged = false;  ///< since
    quint64 m_request = 0;
};

}  // namespace tralio
