#include "platform/linux/selection/followed_primary_selection.h"

#include <utility>

#include "platform/linux/selection/current_selection.h"

namespace tralio {

FollowedPrimarySelection::FollowedPrimarySelection(
    Read read, FrontIdentity frontIdentity, KeepsPasswords keepsPasswords)
    : m_read(std::move(read)),
      m_frontIdentity(std::move(frontIdentity)),
      m_keepsPasswords(std::move(keepsPasswords)) {}

void FollowedPrimarySelection::noteChange() {
    m_owner = m_frontIdentity();
    m_freshUntil.setRemainingTime(freshTime);
}

std::optional<PrimaryText> FollowedPrimarySelection::textOf(qint32 /*processId*/, QDeadlineTimer deadline) {
    if (m_owner.isEmpty() || m_frontIdentity() != m_owner)
        return std::nullopt;
    const auto text = m_read(deadline);
    if (!text)
        return std::nullopt;
    PrimaryText mark{*text};
    mark.isFresh = !m_freshUntil.hasExpired();
    mark.mayBePassword = looksLikePassword(*text, Marking::unknown) && !m_keepsPasswords();
    return mark;
}

}  // namespace tralio
