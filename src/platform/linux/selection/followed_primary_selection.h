#pragma once

#include <functional>

#include "platform/linux/selection/primary_selection.h"

namespace tralio {

/// The PRIMARY selection where nobody tells which program owns it: trusted only when the application that was
/// in front when it changed is in front again. How it was marked nobody tells either.
class FollowedPrimarySelection final : public PrimarySelection {
public:
    using Read = std::function<std::optional<QString>(QDeadlineTimer)>;
    /// Names the application in front; an empty name is nobody's.
    using FrontIdentity = std::function<QString()>;

    /// Whether the application in front keeps the text of its password fields out of PRIMARY.
    using KeepsPasswords = std::function<bool()>;

    FollowedPrimarySelection(Read read, FrontIdentity frontIdentity, KeepsPasswords keepsPasswords);

    /// To be called at each change, when it happens.
    void noteChange();

    /// `processId` is that of the application in front.
    std::optional<PrimaryText> textOf(qint32 processId, QDeadlineTimer deadline) override;

private:
    Read m_read;
    FrontIdentity m_frontIdentity;
    KeepsPasswords m_keepsPasswords;
    QString m_owner;
    QDeadlineTimer m_freshUntil;
};

}  // namespace tralio
