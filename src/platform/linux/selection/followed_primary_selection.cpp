#include "platform/linux/selection/followed_primary_selection.h"

#include <algorithm>
#include <utility>

#include "platform/linux/selection/current_selection.h"

namespace tralio {
namespace {

using namespace std::chrono_literals;

/// Shortly after selecting a text the user has hardly clicked it away.
constexpr auto trustedTime = 10s;
/// One press of the hot key reads the selection several times.
constexpr auto askingTime = 1s;

}  // namespace

FollowedPrimarySelection::FollowedPrimarySelection(Session session) : m_session(std::move(session)) {}

void FollowedPrimarySelection::noteChange() {
    m_owner = m_session.frontIdentity();
    m_doubtfulWord.clear();
    const auto now = m_session.now();
    m_freshUntil = now + std::chrono::milliseconds(freshTime);
    m_trustedUntil = now + trustedTime;
}

std::optional<PrimaryText> FollowedPrimarySelection::textOf(qint32 /*processId*/, QDeadlineTimer deadline) {
    m_doubtfulWord.clear();
    if (m_owner.isEmpty() || m_session.frontIdentity() != m_owner)
        return std::nullopt;
    const auto text = m_session.read(deadline);
    if (!text)
        return std::nullopt;
    const auto now = m_session.now();
    PrimaryText mark{*text};
    mark.mayBeGone = now >= m_trustedUntil && m_session.canCopy();
    mark.isFresh = now < m_freshUntil;
    mark.mayBePassword = looksLikePassword(*text, Marking::unknown) && !m_session.keepsPasswords();
    if (mark.mayBePassword && !looksLikePassword(*text, Marking::byDoubleClick) && !m_session.canCopy())
        m_doubtfulWord = *text;
    m_trustedUntil = std::min(m_trustedUntil, now + askingTime);
    return mark;
}

}  // namespace tralio
