#pragma once

#include <QColor>
#include <QPixmap>
#include <QRectF>
#include <QString>

class QPainter;

namespace tralio {

/// An icon of the set by its symbol name. The point size is that of the text it stands beside; `box()`
/// follows from it.
struct Icon {
    QString name;
    int pointSize = 13;
    bool bold = false;

    [[nodiscard]] bool isNull() const { return name.isEmpty(); }

    /// Side of the box in logical pixels.
    [[nodiscard]] int box() const;

    bool operator==(const Icon&) const = default;
};

/// The icon in one colour, rendered for a device pixel ratio. Kept in a cache of limited size. An unknown
/// name is a bug of the caller and gives an empty pixmap.
[[nodiscard]] QPixmap iconPixmap(const Icon& icon, const QColor& color, qreal devicePixelRatio);

/// The icon, `side` pixels wide, for small pictures that other programs show: scaled so that the edges of its
/// `body`, given in the 24 units of the drawing, fall on whole pixels.
[[nodiscard]] QPixmap iconOnPixels(const QString& name, const QColor& color, int side, const QRectF& body);

/// Paints the icon centred in `area`, on whole pixels.
void paintIcon(QPainter& painter, const QRectF& area, const Icon& icon, const QColor& color);

}  // namespace tralio
