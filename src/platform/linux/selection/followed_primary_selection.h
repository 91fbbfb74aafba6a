#pragma once

#include <functional>

#include "platform/linux/selection/primary_selection.h"

namespace tralio {

/// The PRIMARY selection where nobody tells which program owns it: trusted only when the application that was
/// in front when it changed is in front again.
class FollowedPrimarySelection final : public PrimarySelection {
public:
    using Read = std::function<std::optional<QString>(QDeadlineTimer)>;
    /// Names the application in front; an empty name is nobody's.
    using FrontMark = std::function<QString()>;

    FollowedPrimarySelection(Read read, FrontMark frontMark);

    /// To be called at each change, when it happens.
    void noteChange();

    /// `processId` is that of the application in front.
    std::optional<QString> textOf(qint32 processId, QDeadlineTimer deadline) override;

private:
    Read m_read;
    FrontMark m_frontMark;
    QString m_owner;
};

}  // namespace tralio
