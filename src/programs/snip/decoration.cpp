#include "programs/snip/decoration.h"

#include <algorithm>

#include "programs/snip/label_placement.h"
#include "programs/snip/marks.h"

namespace tralio {
namespace {

// Logical pixels.
constexpr double lineBreadth = 1.25;
constexpr double labelGap = 12;
constexpr double hintReach = 24;
constexpr double leastSideWithCorners = 20;
constexpr double leastSideWithMiddle = 72;

// ms
constexpr double fadeTime = 140;
constexpr double longestFrame = 30;  // the time before a fade began must not count towards it

}  // namespace

Decoration::Decoration(const XDisplay& display, const MonitorLayout& monitors)
    : m_display(display), m_monitors(monitors) {
    m_clock.start();
}

Overlay::Scene Decoration::scene(const RegionSelection& selection) {
    Overlay::Scene scene;
    scene.area = selection.area();
    addHint(scene, selection);
    if (scene.area) {
        const Monitor& monitor = m_monitors.at(selection.activeCorner());
        scene.line = monitor.pixels(lineBreadth);
        addHandles(scene, monitor);
        addSize(scene, selection, monitor);
    }
    return scene;
}

void Decoration::addHandles(Overlay::Scene& scene, const Monitor& monitor) {
    const QRect area = *scene.area;
    if (std::min(area.width(), area.height()) < monitor.pixels(leastSideWithCorners))
        return;
    auto found = m_handles.find(monitor.scale);
    if (found == m_handles.end())
        found =
            m_handles.emplace(monitor.scale, XPicture::fromImage(m_display, drawHandle(monitor.scale))).first;
    const XPicture& handle = found->second;

    const QPoint toMiddle(handle.size().width() / 2, handle.size().height() / 2);
    const auto add = [&](int x, int y) { scene.marks.push_back({&handle, QPoint(x, y) - toMiddle}); };
    const int toLine = (scene.line + 1) / 2;
    const QRect line = area.adjusted(-toLine, -toLine, toLine, toLine);
    const int enough = monitor.pixels(leastSideWithMiddle);
    for (const int x : {line.left(), line.right()}) {
        add(x, line.top());
        add(x, line.bottom());
        if (area.height() >= enough)
            add(x, line.center().y());
    }
    if (area.width() >= enough) {
        add(line.center().x(), line.top());
        add(line.center().x(), line.bottom());
    }
}

void Decoration::addSize(Overlay::Scene& scene, const RegionSelection& selection, const Monitor& monitor) {
    const QRect area = *scene.area;
    m_size = XPicture::fromImage(m_display, m_captions.drawSize(area.size(), monitor.scale));
    const QRect place = placeSizeLabel(
        m_size->size(), area, selection.activeCorner(), monitor.area, monitor.pixels(labelGap));
    scene.marks.push_back({&*m_size, place.topLeft()});
}

void Decoration::addHint(Overlay::Scene& scene, const RegionSelection& selection) {
    using Stage = RegionSelection::Stage;
    fade();
    const bool isPlaced = selection.stage() == Stage::Placed;
    const QPoint centre = isPlaced ? selection.area()->center() : selection.pointer();
    const Monitor& monitor = m_monitors.at(centre);
    const bool isWanted = isPlaced || selection.stage() == Stage::Waiting;
    const auto kind = isPlaced ? Captions::Hint::Keys : Captions::Hint::Draw;
    if (isWanted && (kind != m_hintKind || monitor.area != m_hintMonitor)) {
        m_hintKind = kind;
        m_hintMonitor = monitor.area;
        m_hint =
            XPicture::fromImage(m_display, m_captions.drawHint(kind, monitor.scale, monitor.area.width()));
        m_hintOpacity = 0;
    }
    if (!m_hint)
        return;

    const Monitor& shownOn = m_monitors.at(m_hintMonitor.center());
    const QRect place = placeHint(m_hint->size(), shownOn);
    const int reach = shownOn.pixels(hintReach);
    QRect inTheWay(selection.pointer(), QSize(1, 1));
    if (isPlaced)
        inTheWay = *selection.area();
    const bool isFree = !place.adjusted(-reach, -reach, reach, reach).intersects(inTheWay);
    m_hintTarget = isWanted && isFree ? 1 : 0;
    if (m_hintOpacity > 0)
        scene.marks.push_back({&*m_hint, place.topLeft(), m_hintOpacity});
}

void Decoration::fade() {
    const double step = std::min(double(m_clock.restart()), longestFrame) / fadeTime;
    m_hintOpacity = std::clamp(m_hintTarget, m_hintOpacity - step, m_hintOpacity + step);
}

}  // namespace tralio
