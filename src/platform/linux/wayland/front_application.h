#pragma once

#include <QString>

namespace tralio {

class AtspiBus;
class ToplevelWatch;

/// Which application is in front in a Wayland session. Combines what the compositor and the accessibility bus
/// report of their own accord, so that asking costs nothing.
class FrontApplication final {
public:
    /// `toplevels` may be null.
    FrontApplication(const ToplevelWatch* toplevels, const AtspiBus& accessibility)
        : m_toplevels(toplevels), m_accessibility(accessibility) {}

    /// An identifier of the application in front, for comparison with one from another time. Applications
    /// that are not reported share one until another window comes to the front. Empty if neither source is
    /// available.
    [[nodiscard]] QString identity() const;

    /// The application id, if the compositor reports it.
    [[nodiscard]] QString applicationId() const;

    /// Whether the compositor reports that no application is in front, as on an empty workspace.
    [[nodiscard]] bool isNone() const;

private:
    const ToplevelWatch* m_toplevels;
    const AtspiBus& m_accessibility;
};

}  // namespace tralio
