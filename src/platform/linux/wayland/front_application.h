#pragma once

#include <QString>

namespace tralio {

class AtspiBus;
class ToplevelWatch;

/// Which application is in front in a Wayland session, put together from what the compositor and the
/// accessibility bus tell of their own accord; asking costs nothing.
class FrontApplication final {
public:
    /// `toplevels` may be null.
    FrontApplication(const ToplevelWatch* toplevels, const AtspiBus& accessibility)
        : m_toplevels(toplevels), m_accessibility(accessibility) {}

    /// A name for the application in front, good for comparing with one got at another time. Applications
    /// that nobody tells of share a name only while nothing else came to the front. Empty while nobody would
    /// tell of anything.
    [[nodiscard]] QString identity() const;

    /// The application id, where the compositor tells it.
    [[nodiscard]] QString applicationId() const;

    /// Whether the compositor tells that no application is in front, as on an empty workspace.
    [[nodiscard]] bool isNone() const;

private:
    const ToplevelWatch* m_toplevels;
    const AtspiBus& m_accessibility;
};

}  // namespace tralio
