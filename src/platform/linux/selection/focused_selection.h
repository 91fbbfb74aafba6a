#pragma once

#include <QObject>

#include <functional>

namespace tralio {

/// The PRIMARY selection in sessions that show it only to the program with the keyboard focus: it can be read
/// when a window of ours has come to the front, but not whose it is. A text that was there the last time is a
/// left-over, and one that looks like a password is left alone.
class FocusedSelection final : public QObject {
    Q_OBJECT

public:
    /// Calls `deliver` with the selected text once a window of ours has the focus; not at all when there is
    /// none, when it is a left-over, or when the focus does not come within a second. Only the last request
    /// counts.
    void read(std::function<void(const QString&)> deliver);

private:
    void take();

    std::function<void(const QString&)> m_deliver;
    QString m_lastSeen;
    quint64 m_request = 0;
};

}  // namespace tralio
