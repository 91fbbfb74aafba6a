#include "programs/recogniser/rules.h"

#include <algorithm>
#include <cstdlib>

namespace tralio {
namespace {

/// Letters are neither that long and thin nor that hollow.
bool isLineOrFrame(const Extent& extent, int thickness, int unit) {
    const int longSide = std::max(extent.box.width(), extent.box.height());
    const int shortSide = std::min(extent.box.width(), extent.box.height());
    if (longSide < 40 * unit)
        return false;
    const bool isLine = shortSide <= 4 * unit;
    const bool isHollow =
        shortSide >= 12 * unit && extent.area * qint64(100) <= qint64(35) * longSide * shortSide;
    const bool isFrame = extent.area <= 5 * unit * (extent.box.width() + extent.box.height());
    // The letters of a headline are hollow too, but not drawn that finely.
    const bool isTable = thickness <= 2 * unit || (thickness <= 4 * unit && longSide >= 120 * unit);
    return isLine || (isHollow && (isFrame || isTable));
}

/// The edges of the picture that a box touches.
struct Edges {
    Edges(const QRect& box, const Labels& picture)
        : left(box.left() == 0),
          top(box.top() == 0),
          right(box.right() == picture.width - 1),
          bottom(box.bottom() == picture.height - 1) {}

    bool left;
    bool top;
    bool right;
    bool bottom;
};

/// Whether a mark's outline towards the picture is that of what lies outside a button or a bubble: from the
/// picture's edge to a straight line that may bend away at its ends. Letters have arms, feet and holes; what
/// is much wider than high may have a foot as well.
bool followsRoundedBox(const Labels& marks, int mark, const QRect& box, bool fromLeft, int unit) {
    const int greatestStep =
        box.width() * 2 >= 3 * box.height() ? box.width() : std::max(2 * unit, box.width() / 2);
    int last = box.width();
    bool widens = false;
    for (int y = box.top(); y <= box.bottom(); ++y) {
        int width = 0;
        while (
            width < box.width() && marks.at(fromLeft ? box.left() + width : box.right() - width, y) == mark)
            ++width;
        for (int x = width; x < box.width(); ++x)
            if (marks.at(fromLeft ? box.left() + x : box.right() - x, y) == mark)
                return false;
        const bool isStep = y > box.top() && std::abs(width - last) > greatestStep;
        if (width == 0 || isStep || (widens && width < last))
            return false;
        widens = widens || (y > box.top() && width > last);
        last = width;
    }
    return true;
}

bool isOutside(const Labels& marks, int mark, const QRect& box, int unit) {
    const Edges edges(box, marks);
    return (edges.left || edges.right) && followsRoundedBox(marks, mark, box, edges.left, unit);
}

constexpr int thin = 4;  ///< logical pixels

/// Whether letters touch the upper and the lower edge.
bool isCutClosely(const Labels& marks, const std::vector<Extent>& extents, int unit) {
    bool above = false;
    bool below = false;
    for (size_t i = 0; i < extents.size() && !(above && below); ++i) {
        const QRect& box = extents[i].box;
        const Edges edges(box, marks);
        const bool isLetter = (edges.top || edges.bottom) && box.width() > thin * unit &&
            !isOutside(marks, static_cast<int>(i), box, unit);
        above = above || (isLetter && edges.top);
        below = below || (isLetter && edges.bottom);
    }
    return above && below;
}

/// What stands around a button or a tooltip: a bar along an edge of the picture, or what its round corner
/// leaves. Where letters touch the upper and the lower edge, an upright bar is one of them.
bool isSurround(const Labels& marks, int mark, const Extent& extent, bool cutsClosely, int unit) {
    const QRect& box = extent.box;
    const Edges edges(box, marks);
    if (edges.top && edges.bottom && box.height() >= 15 * unit) {
        if (box.width() <= thin * unit)
            return !cutsClosely;
        return isOutside(marks, mark, box, unit) ||
            (!edges.left && !edges.right && !cutsClosely && extent.area <= 3 * unit * box.height());
    }
    if (edges.left && edges.right && box.width() >= 40 * unit)
        return true;
    const bool isBar = extent.area * qint64(4) > qint64(3) * box.width() * box.height();
    return (edges.top || edges.bottom) && !isBar && isOutside(marks, mark, box, unit);
}

bool isBar(const Extent& extent, int unit) {
    return extent.box.width() <= 2 * unit && extent.box.height() >= 8 * unit &&
        extent.area * 10 >= 9 * extent.box.width() * extent.box.height();
}

/// A text cursor, or what is left of a frame: a bar that is the first or last thing in its row, higher than
/// what is written there and, other than an "l", reaching below the line that letters stand on.
bool isTextCursor(size_t bar, const std::vector<Extent>& all, const std::vector<bool>& areRules, int unit) {
    if (!isBar(all[bar], unit))
        return false;
    const QRect& own = all[bar].box;
    std::vector<int> feet;
    bool isFirst = true;
    bool isLast = true;
    for (size_t i = 0; i < all.size(); ++i) {
        const QRect& other = all[i].box;
        const int middle = other.top() + other.height() / 2;
        if (i == bar || areRules[i] || middle < own.top() || middle > own.bottom())
            continue;
        if (other.height() >= own.height() && !isBar(all[i], unit))
            return false;
        isFirst = isFirst && other.left() > own.left();
        isLast = isLast && other.left() < own.left();
        const bool isLetter = other.height() * 10 >= 3 * own.height();  // marks and dots have no foot
        if (isLetter)
            feet.push_back(other.bottom());
    }
    if (feet.empty() || !(isFirst || isLast))
        return false;
    const auto median = feet.begin() + static_cast<std::ptrdiff_t>(feet.size() / 2);
    std::nth_element(feet.begin(), median, feet.end());
    return (own.bottom() - *median) * 8 >= own.height();
}

}  // namespace

std::vector<bool> findRules(const Labels& marks, const std::vector<Extent>& extents, int unit) {
    const std::vector<int> thicknesses = largestSquaresOf(marks);
    const bool cutsClosely = isCutClosely(marks, extents, unit);
    std::vector<bool> areRules(extents.size());
    for (size_t i = 0; i < extents.size(); ++i)
        areRules[i] = isLineOrFrame(extents[i], thicknesses[i], unit) ||
            isSurround(marks, static_cast<int>(i), extents[i], cutsClosely, unit);
    std::vector<size_t> cursors;
    for (size_t i = 0; i < extents.size(); ++i)
        if (!areRules[i] && isTextCursor(i, extents, areRules, unit))
            cursors.push_back(i);
    for (const size_t cursor : cursors)
        areRules[cursor] = true;
    return areRules;
}

}  // namespace tralio
