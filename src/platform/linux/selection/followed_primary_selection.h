#pragma once

#include <chrono>
#include <functional>
#include <utility>

#include "platform/linux/selection/primary_selection.h"

namespace tralio {

/// The PRIMARY selection in sessions that do not report its owner (Wayland). It is attributed to the
/// application that was in front when it changed, and trusted only while that one is in front.
///
/// Clicks and the way in which it was selected are not reported either. So a selection that was already
/// fetched once, or is older than 10 s, counts as possibly cleared, but only where the application's own
/// Copy can be tried instead.
class FollowedPrimarySelection final : public PrimarySelection {
public:
    struct Session {
        std::function<std::optional<QString>(QDeadlineTimer)> read;
        /// An identifier of the application in front; empty if it is unknown.
        std::function<QString()> frontIdentity;
        /// Whether the application in front keeps the text of its password fields out of PRIMARY.
        std::function<bool()> keepsPasswords;
        /// Whether a synthetic Copy reaches the application in front.
        std::function<bool()> canCopy;
        /// The time on a monotonic clock.
        std::function<std::chrono::milliseconds()> now;
    };

    explicit FollowedPrimarySelection(Session session);

    /// Call at each change of PRIMARY, at once.
    void noteChange();

    /// `processId` is that of the application in front.
    std::optional<PrimaryText> textOf(qint32 processId, QDeadlineTimer deadline) override;

    /// The word that was last asked for and called a possible password, if it may just as well be another and
    /// no Copy can be tried instead; once.
    [[nodiscard]] QString takeDoubtfulWord() { return std::exchange(m_doubtfulWord, {}); }

private:
    Session m_session;
    QString m_owner;
    QString m_doubtfulWord;
    std::chrono::milliseconds m_freshUntil{0};
    std::chrono::milliseconds m_trustedUntil{0};
};

}  // namespace tralio
