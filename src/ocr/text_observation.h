#pragma once

#include <QStringList>

namespace tralio {

/// A box in an image as fractions of its width and height. The origin is the image's lower left corner: what
/// stands higher has the larger y.
struct NormalizedRect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    [[nodiscard]] double minX() const { return x; }
    [[nodiscard]] double midY() const { return y + height / 2; }

    bool operator==(const NormalizedRect&) const = default;
};

/// A recognised line: where it stands and what it may say.
struct TextObservation {
    NormalizedRect boundingBox;
    QStringList candidates;  ///< best first

    bool operator==(const TextObservation&) const = default;
};

}  // namespace tralio
