#include "programs/recogniser/marks/rules.h"

#include <QSize>

#include <algorithm>

#include "programs/recogniser/pixels/boxes.h"

namespace tralio {
namespace {

/// How much of the side of a mark's box that has least of it has ink, in hundredths. Where the picture's edge
/// cuts it, a frame has no side.
int leastInkOfSides(const Labels& marks, int mark, const QRect& box, int unit) {
    const int depth = 2 * unit;  // of a side, with its blur
    const auto share = [&](const QRect& side, bool isUpright) {
        int inked = 0;
        const int length = isUpright ? side.height() : side.width();
        for (int i = 0; i < length; ++i) {
            bool hasInk = false;
            for (int k = 0; k < depth && !hasInk; ++k)
                hasInk =
                    marks.at(side.left() + (isUpright ? k : i), side.top() + (isUpright ? i : k)) == mark;
            inked += hasInk ? 1 : 0;
        }
        return inked * 100 / length;
    };
    const int right = box.right() - depth + 1;
    const int bottom = box.bottom() - depth + 1;
    int least = 100;
    if (box.left() > 0)
        least = std::min(least, share(box, true));
    if (box.right() < marks.width - 1)
        least = std::min(least, share({right, box.top(), depth, box.height()}, true));
    if (box.top() > 0)
        least = std::min(least, share(box, false));
    if (box.bottom() < marks.height - 1)
        least = std::min(least, share({box.left(), bottom, box.width(), depth}, false));
    return least;
}

/// How much of its sides a round frame has.
constexpr int round = 25;

/// Whether a mark goes all around: with straight sides, or around something. A large "O" is empty.
bool isClosed(const Labels& marks, const std::vector<Extent>& all, size_t mark, int unit) {
    constexpr int straight = 60;
    const QRect& box = all[mark].box;
    const int least = leastInkOfSides(marks, static_cast<int>(mark), box, unit);
    const QRect inside = box.adjusted(1, 1, -1, -1);
    return least >= straight ||
        (least >= round && std::any_of(all.begin(), all.end(), [&](const Extent& other) {
            return inside.contains(other.box) && other.box.height() >= 5 * unit;
        }));
}

/// A thin ring around a figure, such as a page's number. What signs like "国" hold is higher.
bool isRing(const Labels& marks, const std::vector<Extent>& all, size_t mark, int unit) {
    constexpr int least = 20;
    const QRect& box = all[mark].box;
    if (std::min(box.width(), box.height()) < least * unit ||
        leastInkOfSides(marks, static_cast<int>(mark), box, unit) < round)
        return false;
    QRect inside;
    for (const Extent& other : all)
        if (box.adjusted(1, 1, -1, -1).contains(other.box))
            inside |= other.box;
    return std::max(inside.width(), inside.height()) >= 5 * unit &&
        inside.height() * 100 <= box.height() * 42;
}

/// Letters are neither that long and thin nor that hollow, but for those of a large light headline.
bool isLineOrFrame(
    const Labels& marks, const std::vector<Extent>& all, size_t mark, int thickness, int unit) {
    const Extent& extent = all[mark];
    const int longSide = std::max(extent.box.width(), extent.box.height());
    const int shortSide = std::min(extent.box.width(), extent.box.height());
    // The edge of a button. No letter is that thin, however light.
    if (extent.box.height() >= 28 * unit && extent.box.width() <= 2 * unit)
        return true;
    if (longSide < 40 * unit)
        return thickness <= 2 * unit && isRing(marks, all, mark, unit);
    if (shortSide <= 4 * unit)
        return true;
    if (shortSide < 12 * unit || extent.area * qint64(100) > qint64(35) * longSide * shortSide)
        return false;
    const bool isLarge = longSide >= 120 * unit;
    const bool isFrame = extent.area <= 5 * unit * (extent.box.width() + extent.box.height());
    // The letters of a headline are hollow too, but not drawn that finely.
    const bool isTable = thickness <= 2 * unit || (thickness <= 4 * unit && isLarge);
    return (isFrame || isTable) && (isLarge || isClosed(marks, all, mark, unit));
}

/// Whether a mark in a corner is a letter that was cut flush: beside it stands one of about its height. What
/// is larger is a surround, also where text is as large.
bool isCornerLetter(const std::vector<Extent>& all, size_t mark, int unit) {
    constexpr int largest = 40;
    constexpr int lowest = 6;
    const QRect& box = all[mark].box;
    if (box.height() < lowest * unit || std::min(box.width(), box.height()) > largest * unit)
        return false;
    return std::any_of(all.begin(), all.end(), [&](const Extent& other) {
        const auto [low, high] = std::minmax({box.height(), other.box.height()});
        const int gap = horizontalGap(box, other.box);  // a pointer's rim is not beside the pointer
        return &other != &all[mark] && low * 10 >= high * 6 && sharedHeight(box, other.box) * 10 >= low * 8 &&
            gap >= 0 && gap < high;
    });
}

/// What stands around a button or a tooltip: a bar along an edge of the picture, or around a corner of it.
/// Text that the user's rectangle cuts touches one edge only, or is no bar.
bool isSurround(const std::vector<Extent>& all, size_t mark, QSize picture, int unit) {
    const Extent& extent = all[mark];
    const QRect& box = extent.box;
    const bool left = box.left() == 0;
    const bool right = box.right() == picture.width() - 1;
    const bool top = box.top() == 0;
    const bool bottom = box.bottom() == picture.height() - 1;
    const bool isUpright = top && bottom && box.height() >= 15 * unit &&
        (left || right || extent.area <= 3 * unit * box.height());
    const bool isLevel = left && right && box.width() >= 40 * unit;
    const bool isCorner = (left || right) && (top || bottom) && !isCornerLetter(all, mark, unit);
    return isUpright || isLevel || isCorner;
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
    const QSize picture(marks.width, marks.height);
    std::vector<bool> areRules(extents.size());
    for (size_t i = 0; i < extents.size(); ++i)
        areRules[i] =
            isLineOrFrame(marks, extents, i, thicknesses[i], unit) || isSurround(extents, i, picture, unit);
    std::vector<size_t> cursors;
    for (size_t i = 0; i < extents.size(); ++i)
        if (!areRules[i] && isTextCursor(i, extents, areRules, unit))
            cursors.push_back(i);
    for (const size_t cursor : cursors)
        areRules[cursor] = true;
    return areRules;
}

}  // namespace tralio
