#pragma once

#include <QImage>

#include <array>
#include <optional>

#include "programs/recogniser/plane.h"

namespace tralio {

/// Pictures of one image with its text as dark marks on white, whatever the colours were. The background
/// is what most pixels around are, so that themes, buttons and selections need no cases of their own.
class TextPictures {
public:
    enum class Kind {
        difference,  ///< how far a pixel is from its surroundings in any channel
        brighter,    ///< only where it is brighter
        darker,      ///< only where it is darker
        green,       ///< the plain green channel, for text over photographs
        lineByLine,  ///< the difference from low and wide surroundings, for shaded backgrounds
    };

    /// The image's device pixel ratio counts.
    explicit TextPictures(const QImage& image);

    /// The image as the recogniser takes it: enlarged to where small letters read well, with a border.
    [[nodiscard]] Plane picture(Kind kind);

    /// How strongly the image holds both brighter and darker marks than its surroundings: 0 for only one of
    /// them, 1 for as much of each, as outlined subtitles have.
    [[nodiscard]] double balance();

    /// Pixels of a picture for one of the image, once there is a picture; and the border around it.
    [[nodiscard]] double scale() const { return m_scale; }
    static constexpr int border = 10;

private:
    using Channels = std::array<Plane, 3>;

    [[nodiscard]] const Channels& background();
    [[nodiscard]] Plane marks(Kind kind);
    [[nodiscard]] double chooseScale(const Plane& plain) const;

    Channels m_channels;
    std::optional<Channels> m_background;
    int m_unit;
    double m_scale = 0;  ///< chosen with the first picture, and the same for all
};

}  // namespace tralio
