#include "programs/recogniser/pixels/resample.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tralio {
namespace {

/// Where a pixel of the result comes from: four neighbours and their weights.
struct Tap {
    std::array<int, 4> at;
    std::array<float, 4> weight;
};

std::array<float, 4> catmullRom(float t) {
    const float t2 = t * t;
    const float t3 = t2 * t;
    return {0.5F * (-t3 + 2 * t2 - t), 0.5F * (3 * t3 - 5 * t2 + 2), 0.5F * (-3 * t3 + 4 * t2 + t),
        0.5F * (t3 - t2)};
}

std::vector<Tap> taps(int from, int to) {
    std::vector<Tap> result(static_cast<size_t>(to));
    for (int i = 0; i < to; ++i) {
        const float position =
            (static_cast<float>(i) + 0.5F) * static_cast<float>(from) / static_cast<float>(to) - 0.5F;
        const float whole = std::floor(position);
        Tap& tap = result[static_cast<size_t>(i)];
        for (int k = 0; k < 4; ++k)
            tap.at[static_cast<size_t>(k)] = std::clamp(static_cast<int>(whole) - 1 + k, 0, from - 1);
        tap.weight = catmullRom(position - whole);
    }
    return result;
}

/// The means of four pixels each. What is shrunk further than that by weights of four would lose thin
/// strokes.
Plane halved(const Plane& source) {
    Plane result(source.width() / 2, source.height() / 2);
    for (int y = 0; y < result.height(); ++y) {
        const quint8* upper = source.row(2 * y);
        const quint8* lower = source.row(2 * y + 1);
        quint8* out = result.row(y);
        for (int x = 0; x < result.width(); ++x, upper += 2, lower += 2)
            *out++ = static_cast<quint8>((upper[0] + upper[1] + lower[0] + lower[1] + 2) / 4);
    }
    return result;
}

}  // namespace

Plane resample(const Plane& source, int width, int height) {
    if (source.width() >= 2 * width && source.height() >= 2 * height)
        return resample(halved(source), width, height);
    const std::vector<Tap> columns = taps(source.width(), width);
    const std::vector<Tap> rows = taps(source.height(), height);
    Plane result(width, height);
    std::vector<float> blended(static_cast<size_t>(source.width()));
    for (int y = 0; y < height; ++y) {
        const Tap& tap = rows[static_cast<size_t>(y)];
        const quint8* lines[4] = {
            source.row(tap.at[0]), source.row(tap.at[1]), source.row(tap.at[2]), source.row(tap.at[3])};
        for (size_t x = 0; x < blended.size(); ++x) {
            blended[x] = tap.weight[0] * lines[0][x] + tap.weight[1] * lines[1][x] +
                tap.weight[2] * lines[2][x] + tap.weight[3] * lines[3][x];
        }
        quint8* out = result.row(y);
        for (const Tap& column : columns) {
            float value = 0.5F;
            for (size_t k = 0; k < 4; ++k)
                value += column.weight[k] * blended[static_cast<size_t>(column.at[k])];
            *out++ = static_cast<quint8>(std::clamp(value, 0.0F, 255.0F));
        }
    }
    return result;
}

Plane withBorder(const Plane& source, int border, quint8 value) {
    Plane result(source.width() + 2 * border, source.height() + 2 * border, value);
    for (int y = 0; y < source.height(); ++y)
        std::copy_n(source.row(y), source.width(), result.row(y + border) + border);
    return result;
}

}  // namespace tralio
