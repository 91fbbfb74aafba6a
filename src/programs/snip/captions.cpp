#include "programs/snip/captions.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <span>

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

// Colours of the dark theme on any desktop, since the overlay is dark.
constexpr QColor ground(0x1E, 0x1F, 0x23, 235);
constexpr QColor edge(255, 255, 255, 33);
constexpr QColor text(0xF0, 0xF1, 0xF3);
constexpr QColor secondary(0xA5, 0xAB, 0xB5);
constexpr QColor keyGround(0x2D, 0x2F, 0x35);
constexpr QColor keyEdge(0xA5, 0xAB, 0xB5, 64);

/// One part of the hint: keys, and what they do.
struct Word {
    enum class Kind { Text, Key, Gap } kind;
    QString text = {};
};

std::span<const Word> words(Captions::Hint hint) {
    using enum Word::Kind;
    static const Word draw[] = {{Text, u"Kéo chuột khoanh vùng chứa chữ"_s}, {Gap}, {Key, u"←↑↓→"_s},
        {Text, u"Dùng bàn phím"_s}, {Gap}, {Key, u"Esc"_s}, {Text, u"Hủy"_s}};
    static const Word keys[] = {{Key, u"←↑↓→"_s}, {Text, u"Di chuyển"_s}, {Gap}, {Key, u"Shift"_s},
        {Text, u"Đổi cỡ"_s}, {Gap}, {Key, u"Ctrl"_s}, {Text, u"Nhanh hơn"_s}, {Gap}, {Key, u"Enter"_s},
        {Text, u"Chụp & dịch"_s}, {Gap}, {Key, u"Esc"_s}, {Text, u"Hủy"_s}};
    return hint == Captions::Hint::Draw ? std::span<const Word>(draw) : std::span<const Word>(keys);
}

QFont font(int size, QFont::Weight weight) {
    QFont result;
    result.setFamilies({u"Inter"_s, u"Noto Sans"_s, u"sans-serif"_s});
    result.setPixelSize(size);
    result.setWeight(weight);
    result.setHintingPreference(QFont::PreferNoHinting);
    return result;
}

/// An image to draw on in logical pixels.
QImage canvas(QSizeF logical, double scale) {
    QImage image(int(std::ceil(logical.width() * scale)), int(std::ceil(logical.height() * scale)),
        QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::transparent);
    return image;
}

void drawPlate(QPainter& painter, const QRectF& area, double radius, const QColor& fill, const QColor& line) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(line, 1));
    painter.setBrush(fill);
    painter.drawRoundedRect(area.adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
}

struct HintStyle {
    QFont textFont = font(12, QFont::Normal);
    QFont keyFont = font(11, QFont::DemiBold);
    double height = 40;
    double padding = 16;
    double gap = 18;
    double space = 7;  // between a key and what it does
    double keyHeight = 23;
    double keyPadding = 8;

    [[nodiscard]] double widthOf(const Word& word) const {
        switch (word.kind) {
            case Word::Kind::Key:
                return QFontMetricsF(keyFont).horizontalAdvance(word.text) + 2 * keyPadding + space;
            case Word::Kind::Text:
                return QFontMetricsF(textFont).horizontalAdvance(word.text);
            default:
                return gap;
        }
    }
};

}  // namespace

Captions::Captions() : m_toolkit(m_argumentCount, m_arguments) {}

QImage Captions::drawSize(QSize pixels, double scale) const {
    const QString size = u"%1 × %2"_s.arg(pixels.width()).arg(pixels.height());
    const QFont sizeFont = font(12, QFont::DemiBold);
    constexpr double height = 24;
    constexpr double padding = 8;
    const QSizeF logical(std::ceil(QFontMetricsF(sizeFont).horizontalAdvance(size)) + 2 * padding, height);
    QImage image = canvas(logical, scale);
    QPainter painter(&image);
    drawPlate(painter, QRectF(QPointF(), logical), 6, ground, edge);
    painter.setFont(sizeFont);
    painter.setPen(text);
    painter.drawText(QRectF(QPointF(), logical), Qt::AlignCenter, size);
    return image;
}

QImage Captions::drawHint(Hint hint, double scale, int mostPixels) const {
    const HintStyle style;
    double width = 2 * style.padding;
    for (const Word& word : words(hint))
        width += style.widthOf(word);
    const QSizeF logical(std::ceil(width), style.height);
    QImage image = canvas(logical, std::min(scale, mostPixels / logical.width()));
    QPainter painter(&image);
    drawPlate(painter, QRectF(QPointF(), logical), 10, ground, edge);

    double x = style.padding;
    for (const Word& word : words(hint)) {
        const double advance = style.widthOf(word);
        QRectF place(x, 0, advance, style.height);
        x += advance;
        if (word.kind == Word::Kind::Gap)
            continue;
        if (word.kind == Word::Kind::Key) {
            place = QRectF(
                place.x(), (style.height - style.keyHeight) / 2, advance - style.space, style.keyHeight);
            drawPlate(painter, place, 5, keyGround, keyEdge);
        }
        const bool isKey = word.kind == Word::Kind::Key;
        painter.setFont(isKey ? style.keyFont : style.textFont);
        painter.setPen(isKey ? text : secondary);
        painter.drawText(place, Qt::AlignCenter, word.text);
    }
    return image;
}

}  // namespace tralio
