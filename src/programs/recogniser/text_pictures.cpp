#include "programs/recogniser/text_pictures.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "programs/recogniser/resample.h"
#include "programs/recogniser/ruled_lines.h"
#include "programs/recogniser/window_median.h"

namespace tralio {
namespace {

constexpr int surroundings = 30;  ///< logical pixels to each side
constexpr int wideSurroundings = 80;
constexpr int lowSurroundings = 4;
constexpr quint8 white = 255;

std::array<Plane, 3> channelsOf(const QImage& image) {
    const QImage rgb = image.convertToFormat(QImage::Format_RGB32);
    std::array<Plane, 3> channels;
    channels.fill(Plane(rgb.width(), rgb.height()));
    for (int y = 0; y < rgb.height(); ++y) {
        const auto* pixels = reinterpret_cast<const QRgb*>(rgb.constScanLine(y));
        for (int x = 0; x < rgb.width(); ++x) {
            channels[0].row(y)[x] = static_cast<quint8>(qRed(pixels[x]));
            channels[1].row(y)[x] = static_cast<quint8>(qGreen(pixels[x]));
            channels[2].row(y)[x] = static_cast<quint8>(qBlue(pixels[x]));
        }
    }
    return channels;
}

std::array<Plane, 3> medians(const std::array<Plane, 3>& channels, int radiusX, int radiusY) {
    constexpr int atMost = 120;
    std::array<Plane, 3> result;
    for (size_t i = 0; i < channels.size(); ++i) {
        const auto same =
            std::find(channels.begin(), channels.begin() + static_cast<ptrdiff_t>(i), channels[i]);
        const auto index = static_cast<size_t>(same - channels.begin());
        result[i] = index < i
            ? result[index]
            : windowMedian(channels[i], std::min(radiusX, atMost), std::min(radiusY, atMost));
    }
    return result;
}

/// The largest of what `measure` gives for the three channels of each pixel.
template <typename Measure>
Plane largest(const std::array<Plane, 3>& channels, const std::array<Plane, 3>& background, Measure measure) {
    Plane result(channels[0].width(), channels[0].height());
    std::vector<quint8>& out = result.pixels();
    for (size_t channel = 0; channel < channels.size(); ++channel) {
        const std::vector<quint8>& pixels = channels[channel].pixels();
        const std::vector<quint8>& around = background[channel].pixels();
        for (size_t i = 0; i < out.size(); ++i)
            out[i] = static_cast<quint8>(std::max<int>(out[i], measure(pixels[i], around[i])));
    }
    return result;
}

/// Stretches differences so that the strongest hundredth is black on white. Faint noise stays faint.
void invertToFullContrast(Plane& differences) {
    constexpr int leastContrast = 24;
    std::array<size_t, 256> counts{};
    for (const quint8 value : differences.pixels())
        ++counts[value];
    size_t above = differences.pixels().size() / 100;
    int strongest = 255;
    while (strongest > leastContrast && counts[static_cast<size_t>(strongest)] <= above)
        above -= counts[static_cast<size_t>(strongest--)];

    std::array<quint8, 256> map{};
    for (int value = 0; value < 256; ++value)
        map[static_cast<size_t>(value)] = static_cast<quint8>(white - std::min(255, value * 255 / strongest));
    for (quint8& pixel : differences.pixels())
        pixel = map[pixel];
}

/// Dark on white, if most of it was dark.
Plane onWhite(Plane plane) {
    std::vector<quint8> sorted = plane.pixels();
    const auto middle = sorted.begin() + static_cast<ptrdiff_t>(sorted.size() / 2);
    std::nth_element(sorted.begin(), middle, sorted.end());
    if (*middle < 128)
        for (quint8& pixel : plane.pixels())
            pixel = static_cast<quint8>(255 - pixel);
    return plane;
}

int difference(int pixel, int around) {
    return std::abs(pixel - around);
}

int excess(int pixel, int around) {
    return std::max(0, pixel - around);
}

int shortfall(int pixel, int around) {
    return std::max(0, around - pixel);
}

}  // namespace

TextPictures::TextPictures(const QImage& image)
    : m_channels(channelsOf(image)), m_unit(std::max(1, qRound(image.devicePixelRatio()))) {}

const TextPictures::Channels& TextPictures::background() {
    if (!m_background)
        m_background = medians(m_channels, surroundings * m_unit, surroundings * m_unit);
    return *m_background;
}

double TextPictures::balance() {
    const auto sum = [](const Plane& plane) {
        return std::accumulate(plane.pixels().begin(), plane.pixels().end(), 0.0,
            [](double total, quint8 value) { return total + (value < 24 ? 0 : value); });
    };
    const double brighter = sum(largest(m_channels, background(), excess));
    const double darker = sum(largest(m_channels, background(), shortfall));
    return std::min(brighter, darker) / std::max({brighter, darker, 1.0});
}

Plane TextPictures::marks(Kind kind) {
    Plane result;
    switch (kind) {
        case Kind::difference:
            result = largest(m_channels, background(), difference);
            break;
        case Kind::brighter:
            result = largest(m_channels, background(), excess);
            break;
        case Kind::darker:
            result = largest(m_channels, background(), shortfall);
            break;
        case Kind::green:
            return onWhite(m_channels[1]);
        case Kind::lineByLine:
            result = largest(m_channels,
                medians(m_channels, wideSurroundings * m_unit, lowSurroundings * m_unit), difference);
            break;
    }
    invertToFullContrast(result);
    eraseRules(result, m_unit);
    return result;
}

double TextPictures::chooseScale(const Plane& plain) const {
    // Engines read letters of this height best. Smaller ones gain from more than this, but so do their flaws.
    constexpr double bestHeight = 20;
    constexpr double mostEnlarging = 2.5;
    constexpr double mostPixels = 24e6;  // a page of small print takes half a minute at this
    const int height = letterHeight(plain);
    const double wanted = height > 0 ? bestHeight / height : mostEnlarging / m_unit;
    const double pixels = static_cast<double>(plain.width()) * plain.height();
    return std::min(std::clamp(wanted, 1.0, mostEnlarging), std::sqrt(mostPixels / pixels));
}

Plane TextPictures::picture(Kind kind) {
    const Plane plain = marks(kind);
    if (m_scale == 0)
        m_scale = chooseScale(plain);
    const Plane enlarged = m_scale == 1 ? plain
                                        : resample(plain, std::max(1, qRound(plain.width() * m_scale)),
                                              std::max(1, qRound(plain.height() * m_scale)));
    return withBorder(enlarged, border, white);
}

}  // namespace tralio
