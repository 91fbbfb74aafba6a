#include "programs/recogniser/text_marks.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <numeric>

#include "programs/recogniser/noise.h"

namespace tralio {
namespace {

constexpr int wideSurroundings = 80;
constexpr int lowSurroundings = 4;

/// The largest of what `measure` gives for the three channels of each pixel.
template <typename Measure>
Plane largest(const Channels& channels, const Channels& ground, const QRect& part, Measure measure) {
    Plane result(part.width(), part.height());
    for (size_t channel = 0; channel < channels.size(); ++channel) {
        for (int y = 0; y < part.height(); ++y) {
            const quint8* pixels = channels[channel].row(part.top() + y) + part.left();
            const quint8* beneath = ground[channel].row(part.top() + y) + part.left();
            quint8* out = result.row(y);
            for (int x = 0; x < part.width(); ++x)
                out[x] = static_cast<quint8>(std::max<int>(out[x], measure(pixels[x], beneath[x])));
        }
    }
    return result;
}

/// What `measure` gives for the grey levels of each pixel: colours come and go in photographs.
template <typename Measure>
Plane greyLevels(const Channels& channels, const Channels& ground, const QRect& part, Measure measure) {
    const auto greyAt = [](const Channels& of, int x, int y) {
        return qGray(of[0].row(y)[x], of[1].row(y)[x], of[2].row(y)[x]);
    };
    Plane result(part.width(), part.height());
    for (int y = 0; y < part.height(); ++y) {
        quint8* out = result.row(y);
        for (int x = part.left(); x <= part.right(); ++x)
            *out++ = static_cast<quint8>(
                measure(greyAt(channels, x, part.top() + y), greyAt(ground, x, part.top() + y)));
    }
    return result;
}

int difference(int pixel, int ground) {
    return std::abs(pixel - ground);
}

int excess(int pixel, int ground) {
    return std::max(0, pixel - ground);
}

int shortfall(int pixel, int ground) {
    return std::max(0, ground - pixel);
}

/// Strong where most of it is not.
Plane standingOut(Plane plane) {
    std::vector<quint8> sorted = plane.pixels();
    const auto middle = sorted.begin() + static_cast<ptrdiff_t>(sorted.size() / 2);
    std::nth_element(sorted.begin(), middle, sorted.end());
    if (*middle >= 128)
        for (quint8& pixel : plane.pixels())
            pixel = static_cast<quint8>(255 - pixel);
    return plane;
}

}  // namespace

TextMarks::TextMarks(const QImage& image)
    : m_channels(withoutNoise(channelsOf(image))),
      m_unit(std::max(1, qRound(image.devicePixelRatio()))),
      m_ground(m_channels, m_unit) {}

Plane TextMarks::strengths(Kind kind, const QRect& part) const {
    switch (kind) {
        case Kind::difference:
            return largest(m_channels, m_ground.colours(), part, difference);
        case Kind::brighter:
            return greyLevels(m_channels, m_ground.colours(), part, excess);
        case Kind::darker:
            return greyLevels(m_channels, m_ground.colours(), part, shortfall);
        case Kind::green:
            return standingOut(cut(m_channels[1], part));
        case Kind::lineByLine:
        case Kind::ownColour:
            break;
    }
    const int wide = wideSurroundings * m_unit;
    const int low = lowSurroundings * m_unit;
    const QRect around = part.adjusted(-wide, -low, wide, low) & QRect(QPoint(), size());
    const Channels channels = cut(m_channels, around);
    return largest(channels, medians(channels, wide, low), part.translated(-around.topLeft()), difference);
}

Plane TextMarks::likeness(QRgb colour, const QRect& part) const {
    constexpr int leastContrast = 48;
    const std::array<int, 3> wanted{qRed(colour), qGreen(colour), qBlue(colour)};
    Plane distances(part.width(), part.height());
    for (int y = 0; y < part.height(); ++y) {
        quint8* out = distances.row(y);
        for (size_t channel = 0; channel < wanted.size(); ++channel) {
            const quint8* row = m_channels[channel].row(part.top() + y) + part.left();
            for (int x = 0; x < part.width(); ++x)
                out[x] = static_cast<quint8>(std::max<int>(out[x], std::abs(row[x] - wanted[channel])));
        }
    }
    std::vector<quint8> sorted = distances.pixels();
    const auto middle = sorted.begin() + static_cast<ptrdiff_t>(sorted.size() / 2);
    std::nth_element(sorted.begin(), middle, sorted.end());
    const int contrast = std::max<int>(leastContrast, *middle);
    for (quint8& pixel : distances.pixels())
        pixel = static_cast<quint8>(255 - std::min(255, pixel * 255 / contrast));
    return distances;
}

int fullStrength(const Plane& strengths) {
    constexpr int least = 24;
    std::array<size_t, 256> counts{};
    for (const quint8 value : strengths.pixels())
        ++counts[value];
    size_t above = strengths.pixels().size() / 100;
    int strongest = 255;
    while (strongest > least && counts[static_cast<size_t>(strongest)] <= above)
        above -= counts[static_cast<size_t>(strongest--)];
    return strongest;
}

double balance(const Plane& brighter, const Plane& darker) {
    const auto sum = [](const Plane& plane) {
        return std::accumulate(plane.pixels().begin(), plane.pixels().end(), 0.0,
            [](double total, quint8 value) { return total + (value < 24 ? 0 : value); });
    };
    const double bright = sum(brighter);
    const double dark = sum(darker);
    return std::min(bright, dark) / std::max({bright, dark, 1.0});
}

}  // namespace tralio
