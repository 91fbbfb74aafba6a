#include "ui/kit/icon.h"

#include <QCache>
#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

// Q_INIT_RESOURCE does not work inside a namespace. Without the call the linker drops the icons, because
// nothing else in a static library refers to them.
static void initIcons() {
    Q_INIT_RESOURCE(icons);
}

namespace tralio {
namespace {

struct Key {
    Icon icon;
    QRgb color;
    int sidePixels;

    bool operator==(const Key&) const = default;
};

size_t qHash(const Key& key, size_t seed = 0) {
    return qHashMulti(seed, key.icon.name, key.icon.pointSize, key.icon.bold, key.color, key.sidePixels);
}

/// In bytes: about forty icons at twice the resolution.
constexpr qsizetype cacheBytes = 256 * 1024;

QByteArray strokeWidth(const Icon& icon) {
    const int box = icon.box();
    if (icon.bold)
        return "2.25"_ba;
    if (box <= 16)
        return "2"_ba;
    return box == 44 ? "1.5"_ba : "1.75"_ba;
}

constexpr int drawingSide = 24;

/// `place` is the rectangle of the whole drawing, in pixels.
QPixmap render(const Icon& icon, const QColor& color, int side, const QRectF& place) {
    initIcons();
    QFile file(u":/tralio/icons/%1.svg"_s.arg(icon.name));
    if (!file.open(QIODevice::ReadOnly)) {
        qWarning("No icon is named %s", qUtf8Printable(icon.name));
        return {};
    }
    QByteArray svg = file.readAll();
    // The first stroke width applies to the whole drawing and is replaced; later ones belong to single shapes
    // and stay.
    constexpr QByteArrayView drawn = "stroke-width=\"1.75\"";
    if (const qsizetype at = svg.indexOf(drawn); at >= 0)
        svg.replace(at, drawn.size(), "stroke-width=\"" + strokeWidth(icon) + '"');
    // WORKAROUND: Qt SVG 6.4 ignores the alpha of a colour. The shape is drawn opaque, with the opacity set
    // on the painter.
    svg.replace("currentColor", color.name(QColor::HexRgb).toLatin1());

    QPixmap pixmap(side, side);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setOpacity(color.alphaF());
    QSvgRenderer(svg).render(&painter, place);
    return pixmap;
}

}  // namespace

int Icon::box() const {
    static constexpr std::pair<int, int> boxes[] = {
        {10, 12}, {11, 14}, {13, 16}, {14, 18}, {16, 20}, {20, 24}, {36, 44}, {42, 52}};
    for (const auto& [points, side] : boxes)
        if (pointSize <= points)
            return side;
    return int(std::lround(pointSize * 1.24));
}

QPixmap iconPixmap(const Icon& icon, const QColor& color, qreal devicePixelRatio) {
    static QCache<Key, QPixmap> cache(cacheBytes);
    const int side = int(std::lround(icon.box() * devicePixelRatio));
    const Key key{icon, color.rgba(), side};
    if (const QPixmap* cached = cache.object(key)) {
        QPixmap pixmap = *cached;
        pixmap.setDevicePixelRatio(devicePixelRatio);
        return pixmap;
    }
    QPixmap pixmap = render(icon, color, side, QRectF(0, 0, side, side));
    if (!pixmap.isNull()) {
        cache.insert(key, new QPixmap(pixmap), qsizetype(side) * side * 4);
        pixmap.setDevicePixelRatio(devicePixelRatio);
    }
    return pixmap;
}

QPixmap iconOnPixels(const QString& name, const QColor& color, int side, const QRectF& body) {
    const qreal scale = qreal(side) / drawingSide;
    const QRectF drawn(body.topLeft() * scale, body.size() * scale);
    const QRectF whole(
        QPointF(drawn.topLeft().toPoint()), QPointF(std::round(drawn.right()), std::round(drawn.bottom())));
    const qreal across = whole.width() / body.width();
    const qreal down = whole.height() / body.height();
    return render({.name = name, .pointSize = side}, color, side,
        {whole.left() - body.left() * across, whole.top() - body.top() * down, drawingSide * across,
            drawingSide * down});
}

void paintIcon(QPainter& painter, const QRectF& area, const Icon& icon, const QColor& color) {
    if (icon.isNull())
        return;
    const qreal ratio = painter.device()->devicePixelRatioF();
    const int box = icon.box();
    const QPointF corner(
        std::round(area.center().x() - box / 2.0), std::round(area.center().y() - box / 2.0));
    painter.drawPixmap(corner, iconPixmap(icon, color, ratio));
}

}  // namespace tralio
