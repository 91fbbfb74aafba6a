#include "programs/recogniser/marks/text_marks.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <numeric>

#include "programs/recogniser/pixels/noise.h"

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

/// The mean of the three channels' differences from the ground.
Plane meanDifference(const Channels& channels, const Channels& ground, const QRect& part) {
    Plane result(part.width(), part.height());
    for (int y = 0; y < part.height(); ++y) {
        quint8* out = result.row(y);
        for (int x = part.left(); x <= part.right(); ++x) {
            int sum = 0;
            for (size_t channel = 0; channel < channels.size(); ++channel)
                sum += std::abs(
                    channels[channel].row(part.top() + y)[x] - ground[channel].row(part.top() + y)[x]);
            *out++ = static_cast<quint8>(sum / 3);
        }
    }
    return result;
}

/// Whether letters were drawn with the stripes of a display's pixels: where red is ahead of blue on one side
/// of a stroke it is behind on the other. Letters of one colour, and pictures, have it alike on both.
bool haveColourFringes(const Channels& channels, const Channels& ground, const QRect& part) {
    constexpr double oneSided = 0.3;
    constexpr double visible = 0.1;
    double slopes = 0;
    double fringes = 0;
    double balance = 0;
    for (int y = part.top(); y <= part.bottom(); ++y) {
        const auto marks = [&](size_t channel, int x) {
            return std::abs(channels[channel].row(y)[x] - ground[channel].row(y)[x]);
        };
        for (int x = part.left() + 1; x < part.right(); ++x) {
            const double slope = marks(1, x + 1) - marks(1, x - 1);
            const double fringe = marks(0, x) - marks(2, x);
            slopes += slope * slope;
            fringes += std::abs(slope * fringe);
            balance += slope * fringe;
        }
    }
    return std::abs(balance) > oneSided * fringes && fringes > visible * slopes;
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

/// What is not beside a pixel of the colour is no blurred edge of a letter.
void eraseFarFromInk(Plane& distances) {
    constexpr int ink = 40;
    constexpr int blur = 2;
    const Plane before = distances;
    const QRect all(0, 0, distances.width(), distances.height());
    const auto isNearInk = [&](int x, int y) {
        const QRect around = QRect(x - blur, y - blur, 2 * blur + 1, 2 * blur + 1) & all;
        for (int v = around.top(); v <= around.bottom(); ++v) {
            const quint8* row = before.row(v) + around.left();
            if (std::any_of(row, row + around.width(), [](quint8 distance) { return distance <= ink; }))
                return true;
        }
        return false;
    };
    for (int y = 0; y < distances.height(); ++y)
        for (int x = 0; x < distances.width(); ++x)
            if (!isNearInk(x, y))
                distances.row(y)[x] = 255;
}

}  // namespace

TextMarks::TextMarks(const QImage& image)
    : m_channels(withoutNoise(channelsOf(image))),
      m_unit(std::max(1, qRound(image.devicePixelRatio()))),
      m_ground(m_channels, m_unit) {}

Plane TextMarks::strengths(Kind kind, const QRect& part) const {
    switch (kind) {
        case Kind::difference:
            // By the strongest channel such letters would be as bold as their fringes.
            return haveColourFringes(m_channels, m_ground.colours(), part)
                ? meanDifference(m_channels, m_ground.colours(), part)
                : largest(m_channels, m_ground.colours(), part, difference);
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

Plane TextMarks::likeness(QRgb colour, const QRect& part, bool isOutlined) const {
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
    if (isOutlined)
        eraseFarFromInk(distances);
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
