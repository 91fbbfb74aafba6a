#pragma once

#include <QElapsedTimer>

#include <map>
#include <optional>

#include "programs/snip/captions.h"
#include "programs/snip/overlay.h"
#include "programs/snip/region_selection.h"

namespace tralio {

/// What the overlay shows on top of the screen: the rectangle's handles and size, and the hint, which fades
/// out while the user draws or the pointer is near it.
class Decoration final {
public:
    Decoration(const XDisplay& display, const MonitorLayout& monitors);

    /// The scene for what is selected now.
    [[nodiscard]] Overlay::Scene scene(const RegionSelection& selection);
    /// Whether the next scene will differ, even if nothing happens.
    [[nodiscard]] bool isFading() const { return m_hintOpacity != m_hintTarget; }

private:
    void addHandles(Overlay::Scene& scene, const Monitor& monitor);
    void addSize(Overlay::Scene& scene, const RegionSelection& selection, const Monitor& monitor);
    void addHint(Overlay::Scene& scene, const RegionSelection& selection);
    void fade();

    const XDisplay& m_display;
    const MonitorLayout& m_monitors;
    Captions m_captions;
    std::map<double, XPicture> m_handles;  ///< by scale
    std::optional<XPicture> m_size;
    std::optional<XPicture> m_hint;
    std::optional<Captions::Hint> m_hintKind;
    QRect m_hintMonitor;
    double m_hintOpacity = 0;
    double m_hintTarget = 1;
    QElapsedTimer m_clock;
};

}  // namespace tralio
