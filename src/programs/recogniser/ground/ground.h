#pragma once

#include <QRect>

#include <vector>

#include "programs/recogniser/pixels/colour_planes.h"

namespace tralio {

/// What a picture's text stands on: for each pixel the colour that would be there without marks, and the
/// region that it belongs to. A region is one flat area (a page, a button, a bubble, a cell), or a shaded
/// one: a photograph, whose colour is what most pixels around have.
class Ground {
public:
    /// `unit` is the number of pixels of a logical one.
    Ground(const Channels& channels, int unit);

    [[nodiscard]] const Channels& colours() const { return m_colours; }
    [[nodiscard]] int regionAt(QPoint pixel) const { return m_regions[index(pixel)]; }
    [[nodiscard]] bool isShaded(int region) const { return region >= m_firstShaded; }
    [[nodiscard]] bool isShadedAt(QPoint pixel) const { return isShaded(regionAt(pixel)); }
    /// Of a shaded region.
    [[nodiscard]] const QRect& boxOf(int region) const {
        return m_boxes[static_cast<size_t>(region - m_firstShaded)];
    }
    [[nodiscard]] bool hasShades() const { return m_hasShades; }

private:
    /// What lies in a box, continued from a region where that is not.
    [[nodiscard]] Channels partOf(const Channels& channels, const QRect& box, int region) const;
    [[nodiscard]] size_t index(QPoint pixel) const {
        return static_cast<size_t>(pixel.y()) * static_cast<size_t>(m_colours[0].width()) +
            static_cast<size_t>(pixel.x());
    }

    Channels m_colours;
    std::vector<int> m_regions;
    std::vector<QRect> m_boxes;
    int m_firstShaded = 0;
    bool m_hasShades = false;
};

/// The medians of all channels; channels that are equal are counted once.
[[nodiscard]] Channels medians(const Channels& channels, int radiusX, int radiusY);

}  // namespace tralio
