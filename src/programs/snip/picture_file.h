#pragma once

#include <QImage>
#include <QString>

namespace tralio {

/// The captured picture, as a PNG. It states its pixels per logical pixel twice: as the text
/// "DevicePixelRatio" ("2", "1.5"), which a recogniser should read (QImage::text), and for other programs as
/// its resolution (pHYs), 96 dots per inch at a ratio of 1.
///
/// The file is written whole or not at all, and only its owner may read it, since it shows what was on the
/// screen.
struct PictureFile {
    /// Why no file can be written at `path`, as far as can be known in advance; empty if nothing is known.
    [[nodiscard]] static QString obstacleAt(const QString& path);
    /// Writes the file. Returns why it failed; empty on success.
    [[nodiscard]] static QString write(QImage picture, double devicePixelRatio, const QString& path);
};

}  // namespace tralio
