#pragma once

#include <QImage>
#include <QString>

namespace tralio {

/// The picture that was taken, as a PNG. How many of its pixels make a logical pixel stands in it twice: as
/// the text "DevicePixelRatio" ("2", "1.5"), which is what a recogniser should read (QImage::text), and for
/// other programs as its resolution (pHYs), 96 dots per inch at a ratio of 1.
///
/// A file is there whole or not at all, and only its owner may read it: it shows what was on the screen.
struct PictureFile {
    /// The reason why no file can be written at a path, as far as can be told beforehand; empty when there is
    /// none.
    [[nodiscard]] static QString obstacleAt(const QString& path);
    /// Writes the file; the reason when it could not, else empty.
    [[nodiscard]] static QString write(QImage picture, double devicePixelRatio, const QString& path);
};

}  // namespace tralio
