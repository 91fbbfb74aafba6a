#pragma once

#include <QImage>
#include <QRect>

#include "programs/recogniser/ground/ground.h"
#include "programs/recogniser/pixels/colour_planes.h"

namespace tralio {

/// What stands out from a picture's ground, whatever its colours are.
class TextMarks {
public:
    enum class Kind {
        difference,  ///< how far a pixel is from the ground in any channel
        brighter,    ///< only where it is brighter
        darker,      ///< only where it is darker
        green,       ///< the plain green channel, for text over photographs
        lineByLine,  ///< the difference from low and wide surroundings, for shaded grounds
        ownColour,   ///< how near it is to the colour that the letters are known to have
    };

    /// The image's device pixel ratio counts.
    explicit TextMarks(const QImage& image);

    [[nodiscard]] const Ground& ground() const { return m_ground; }
    [[nodiscard]] int unit() const { return m_unit; }
    [[nodiscard]] QSize size() const { return {m_channels[0].width(), m_channels[0].height()}; }

    /// The marks of a part of the picture: 0 for the ground, and more the more a pixel differs from it.
    [[nodiscard]] Plane strengths(Kind kind, const QRect& part) const;

    /// The same for marks of a known colour; of outlined ones nothing that is not beside them.
    [[nodiscard]] Plane likeness(QRgb colour, const QRect& part, bool isOutlined) const;

    [[nodiscard]] const Channels& channels() const { return m_channels; }

private:
    Channels m_channels;
    int m_unit;
    Ground m_ground;
};

/// How strong the strongest hundredth is, at least as strong as anything that is more than noise.
[[nodiscard]] int fullStrength(const Plane& strengths);

/// How much of both brighter and darker marks there is: 0 for only one of them, 1 for as much of each, as
/// outlined subtitles have.
[[nodiscard]] double balance(const Plane& brighter, const Plane& darker);

}  // namespace tralio
