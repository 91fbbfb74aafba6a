#include "platform/linux/selection/followed_primary_selection.h"

#include <utility>

namespace tralio {

FollowedPrimarySelection::FollowedPrimarySelection(Read read, FrontMark frontMark)
    : m_read(std::move(read)), m_frontMark(std::move(frontMark)) {}

void FollowedPrimarySelection::noteChange() {
    m_owner = m_frontMark();
}

std::optional<QString> FollowedPrimarySelection::textOf(qint32 /*processId*/, QDeadlineTimer deadline) {
    if (m_owner.isEmpty() || m_frontMark() != m_owner)
        return std::nullopt;
    return m_read(deadline);
}

}  // namespace tralio
