#pragma once

#include <chrono>
#include <functional>

#include "platform/linux/selection/primary_selection.h"

namespace tralio {

/// The PRIMARY selection where nobody tells which program owns it: trusted only when the application that was
/// in front when it changed is in front again.
///
/// Nobody tells of clicks there either, nor of how it was marked. A mark may be gone once it has been asked
/// for, or is some time old; but only where the application itself can be asked instead, by its Copy, is that
/// held against it.
class FollowedPrimarySelection final : public PrimarySelection {
public:
    struct Session {
        std::function<std::optional<QString>(QDeadlineTimer)> read;
        /// Names the application in front; an empty name is nobody's.
        std::function<QString()> frontIdentity;
        /// Whether the application in front keeps the text of its password fields out of PRIMARY.
        std::function<bool()> keepsPasswords;
        /// Whether a synthetic Copy reaches it.
        std::function<bool()> canCopy;
        /// On a clock of its own.
        std::function<std::chrono::milliseconds()> now;
    };

    explicit FollowedPrimarySelection(Session session);

    /// To be called at each change, when it happens.
    void noteChange();

    /// `processId` is that of the application in front.
    std::optional<PrimaryText> textOf(qint32 processId, QDeadlineTimer deadline) override;

private:
    Session m_session;
    QString m_owner;
    std::chrono::milliseconds m_freshUntil{0};
    std::chrono::milliseconds m_trustedUntil{0};
};

}  // namespace tralio
