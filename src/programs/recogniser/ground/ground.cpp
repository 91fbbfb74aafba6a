#include "programs/recogniser/ground/ground.h"

#include <algorithm>

#include "programs/recogniser/ground/flat_areas.h"
#include "programs/recogniser/pixels/window_median.h"

namespace tralio {
namespace {

constexpr int surroundings = 30;  ///< logical pixels to each side
/// What is further from every flat area is no letter on one but a picture of its own.
constexpr int widestStroke = 16;

/// For each pixel the nearest wanted one, and how far it is, diagonal steps counting one.
struct Nearest {
    std::vector<int> pixel;
    std::vector<int> distance;
};

template <typename IsWanted>
Nearest nearestPixels(QSize size, IsWanted isWanted) {
    constexpr int far = 1 << 28;
    const int width = size.width();
    const int height = size.height();
    const auto index = [width](int x, int y) {
        return static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x);
    };
    const size_t count = index(0, height);
    Nearest nearest{std::vector<int>(count, Labels::none), std::vector<int>(count, far)};
    for (size_t i = 0; i < count; ++i) {
        if (!isWanted(i))
            continue;
        nearest.pixel[i] = static_cast<int>(i);
        nearest.distance[i] = 0;
    }
    const auto take = [&](int x, int y, int dx, int dy) {
        if (x + dx < 0 || x + dx >= width || y + dy < 0 || y + dy >= height)
            return;
        const size_t own = index(x, y);
        const size_t other = index(x + dx, y + dy);
        if (nearest.distance[other] + 1 >= nearest.distance[own])
            return;
        nearest.distance[own] = nearest.distance[other] + 1;
        nearest.pixel[own] = nearest.pixel[other];
    };
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            if (nearest.distance[index(x, y)] == 0)
                continue;
            take(x, y, -1, 0);
            take(x, y, 0, -1);
            take(x, y, -1, -1);
            take(x, y, 1, -1);
        }
    }
    for (int y = height - 1; y >= 0; --y) {
        for (int x = width - 1; x >= 0; --x) {
            if (nearest.distance[index(x, y)] == 0)
                continue;
            take(x, y, 1, 0);
            take(x, y, 0, 1);
            take(x, y, 1, 1);
            take(x, y, -1, 1);
        }
    }
    return nearest;
}

void paste(const Plane& part, const QRect& place, Plane& into, const Labels& groups, int group) {
    for (int y = place.top(); y <= place.bottom(); ++y)
        for (int x = place.left(); x <= place.right(); ++x)
            if (groups.at(x, y) == group)
                into.row(y)[x] = part.row(y - place.top())[x - place.left()];
}

}  // namespace

Channels medians(const Channels& channels, int radiusX, int radiusY) {
    constexpr int atMost = 120;
    Channels result;
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

Channels Ground::partOf(const Channels& channels, const QRect& box, int region) const {
    Channels part = cut(channels, box);
    const auto width = static_cast<size_t>(box.width());
    const Nearest own = nearestPixels(box.size(), [&](size_t i) {
        return regionAt(box.topLeft() + QPoint(static_cast<int>(i % width), static_cast<int>(i / width))) ==
            region;
    });
    for (Plane& plane : part)
        for (size_t i = 0; i < own.pixel.size(); ++i)
            plane.pixels()[i] = plane.pixels()[static_cast<size_t>(own.pixel[i])];
    return part;
}

Ground::Ground(const Channels& channels, int unit) : m_colours(channels) {
    const FlatAreas areas = findFlatAreas(channels, unit);
    const Labels& flat = areas.labels;
    const Nearest nearest =
        nearestPixels({flat.width, flat.height}, [&](size_t i) { return flat.of[i] != Labels::none; });

    // Marks on a flat area are the pixels that lie in none, as far as they are near one. Connected ones are
    // judged together.
    const Labels marks = connect(
        flat.width, flat.height, Neighbours::eight, [&](size_t i) { return flat.of[i] == Labels::none; },
        [](size_t, size_t) { return true; });
    std::vector<int> thickness(static_cast<size_t>(marks.count));
    for (size_t i = 0; i < marks.of.size(); ++i)
        if (marks.of[i] != Labels::none)
            thickness[static_cast<size_t>(marks.of[i])] =
                std::max(thickness[static_cast<size_t>(marks.of[i])], nearest.distance[i]);

    m_firstShaded = flat.count;
    m_regions.resize(flat.of.size());
    const auto isShadedMark = [&](int mark) {
        return mark != Labels::none && thickness[static_cast<size_t>(mark)] > widestStroke * unit;
    };
    for (size_t i = 0; i < m_regions.size(); ++i) {
        if (isShadedMark(marks.of[i])) {
            m_regions[i] = m_firstShaded + marks.of[i];
            continue;
        }
        const auto from = static_cast<size_t>(nearest.pixel[i]);
        m_regions[i] = flat.of[from];
        for (Plane& colour : m_colours)
            colour.pixels()[i] = colour.pixels()[from];
    }

    // Even patches inside a photograph are part of it, but for what somebody put there.
    const std::vector<Extent> extents = extentsOf(marks);
    std::vector<int> owners(static_cast<size_t>(flat.count + marks.count));
    std::iota(owners.begin(), owners.end(), 0);
    for (int mark = 0; mark < marks.count; ++mark) {
        m_boxes.push_back(extents[static_cast<size_t>(mark)].box);
        if (!isShadedMark(mark))
            continue;
        m_hasShades = true;
        const QRect& box = extents[static_cast<size_t>(mark)].box;
        for (size_t area = 0; area < areas.boxes.size(); ++area)
            if (!areas.areBars[area] && box.contains(areas.boxes[area]))
                owners[area] = m_firstShaded + mark;
    }
    if (!m_hasShades)
        return;
    for (int& region : m_regions)
        region = owners[static_cast<size_t>(region)];

    const int reach = surroundings * unit;
    for (int mark = 0; mark < marks.count; ++mark) {
        if (!isShadedMark(mark))
            continue;
        const QRect box = extents[static_cast<size_t>(mark)].box;
        const Channels background = medians(partOf(channels, box, m_firstShaded + mark), reach, reach);
        for (size_t i = 0; i < background.size(); ++i)
            paste(background[i], box, m_colours[i], marks, mark);
    }
}

}  // namespace tralio
