#pragma once

#include "hotkeys/workspace.h"

namespace tralio {

class AtspiBus;
class FrontApplication;

/// The applications of a Wayland session. The process of the one in front is known only from the
/// accessibility bus. An application that is not on that bus has process 0; its PRIMARY selection can still
/// be read.
class WaylandWorkspace final : public Workspace {
public:
    WaylandWorkspace(const FrontApplication& front, const AtspiBus& accessibility);

    std::optional<RunningApplication> frontmostApplication() override;
    void openURL(const QUrl& url) override;

private:
    const FrontApplication& m_front;
    const AtspiBus& m_accessibility;
};

}  // namespace tralio
