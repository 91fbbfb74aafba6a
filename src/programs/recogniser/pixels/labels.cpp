#include "programs/recogniser/pixels/labels.h"

#include <algorithm>
#include <limits>

namespace tralio {

std::vector<Extent> extentsOf(const Labels& labels) {
    struct Bounds {
        int left = std::numeric_limits<int>::max();
        int top = 0;
        int right = 0;
        int bottom = 0;
        int area = 0;
    };
    std::vector<Bounds> bounds(static_cast<size_t>(labels.count));
    const int* label = labels.of.data();
    for (int y = 0; y < labels.height; ++y) {
        for (int x = 0; x < labels.width; ++x, ++label) {
            if (*label == Labels::none)
                continue;
            Bounds& own = bounds[static_cast<size_t>(*label)];
            if (own.area++ == 0)
                own.top = y;
            own.bottom = y;
            own.left = std::min(own.left, x);
            own.right = std::max(own.right, x);
        }
    }
    std::vector<Extent> extents;
    extents.reserve(bounds.size());
    for (const Bounds& own : bounds)
        extents.push_back({QRect(QPoint(own.left, own.top), QPoint(own.right, own.bottom)), own.area});
    return extents;
}

std::vector<int> largestSquaresOf(const Labels& groups) {
    std::vector<int> largest(static_cast<size_t>(groups.count), 1);
    std::vector<int> above(static_cast<size_t>(groups.width));
    std::vector<int> sides(above.size());
    for (int y = 0; y < groups.height; ++y, above.swap(sides)) {
        for (int x = 0; x < groups.width; ++x) {
            const int own = groups.at(x, y);
            const auto column = static_cast<size_t>(x);
            sides[column] = 0;
            if (own == Labels::none)
                continue;
            const bool grows = x > 0 && y > 0 && groups.at(x - 1, y) == own && groups.at(x, y - 1) == own &&
                groups.at(x - 1, y - 1) == own;
            sides[column] = grows ? 1 + std::min({sides[column - 1], above[column], above[column - 1]}) : 1;
            int& side = largest[static_cast<size_t>(own)];
            side = std::max(side, sides[column]);
        }
    }
    return largest;
}

}  // namespace tralio
