#include "platform/linux/selection/followed_primary_selection.h"

#include <utility>

#include "platform/linux/selection/current_selection.h"

namespace tralio {

FollowedPrimarySelection::FollowedPrimarySelection(
    Read read, FrontMark frontMark, GivesPasswords givesPasswords)
    : m_read(std::move(read)),
      m_frontMark(std::move(frontMark)),
      m_givesPasswords(std::move(givesPasswords)) {}

void FollowedPrimarySelection::noteChange() {
    m_owner = m_frontMark();
    m_freshUntil.setRemainingTime(freshTime);
}

std::optional<PrimaryMark> FollowedPrimarySelection::markOf(qint32 /*processId*/, QDeadlineTimer deadline) {
    if (m_owner.isEmpty() || m_frontMark() != m_owner)
        return std::nullopt;
    const auto text = m_read(deadline);
    if (!text)
        return std::nullopt;
    PrimaryMark mark{*text};
    mark.isFresh = !m_freshUntil.hasExpired();
    mark.mayBePassword = m_givesPasswords() && looksLikePassword(*text, Marking::unknown);
    return mark;
}

}  // namespace tralio
