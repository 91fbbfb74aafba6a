#include "programs/recogniser/marks/underlines.h"

#include <algorithm>
#include <optional>

namespace tralio {
namespace {

/// One mark among the others.
struct Mark {
    const Labels& all;
    int label;
    QRect box;

    [[nodiscard]] bool hasInk(int x, int y) const { return box.contains(x, y) && all.at(x, y) == label; }
};

struct Rows {
    int top;
    int bottom;
};

/// Above it no line goes through letters or beneath them.
int highestLine(const QRect& box) {
    return box.top() + box.height() / 4;
}

/// Whether there is ink in that many hundredths of a row, without a gap.
bool hasRun(const Mark& mark, int y, int share) {
    int run = 0;
    for (int x = mark.box.left(); x <= mark.box.right(); ++x) {
        run = mark.hasInk(x, y) ? run + 1 : 0;
        if (run * 100 >= mark.box.width() * share)
            return true;
    }
    return false;
}

/// The upper edge of a frame, or a row of a table.
bool hasLevelTop(const Mark& mark, int above) {
    for (int y = mark.box.top(); y < above; ++y)
        if (hasRun(mark, y, 50))
            return true;
    return false;
}

/// The fewest rows, from the lowest up, that together have ink from one end of the mark to the other.
std::optional<Rows> findLine(const Mark& mark, int unit) {
    const auto highest = static_cast<size_t>(5 * unit);  // of a squiggle
    const int width = mark.box.width();
    const auto isNearlyAll = [width](int columns) { return columns * 10 >= width * 9; };
    const int middle = mark.box.center().y();
    if (hasLevelTop(mark, highestLine(mark.box)))
        return std::nullopt;
    const int lowest = hasLevelTop(mark, middle) ? mark.box.bottom() + 1 : middle;
    std::optional<Rows> line;
    size_t least = highest + 1;
    std::vector<size_t> toInk(static_cast<size_t>(width), highest);  // rows down to the next ink, by column
    for (int y = mark.box.bottom(); y >= highestLine(mark.box); --y) {
        std::vector<int> counts(highest + 1);
        for (size_t x = 0; x < toInk.size(); ++x) {
            toInk[x] =
                mark.hasInk(mark.box.left() + static_cast<int>(x), y) ? 0 : std::min(highest, toInk[x] + 1);
            ++counts[toInk[x]];
        }
        // What goes through letters is straight: those that touch have ink everywhere in a few rows.
        if (y < lowest && !hasRun(mark, y, 97))
            continue;
        const bool isThicker = line && line->top == y + 1 && counts[0] * 10 >= width * 6;
        if (isThicker)
            line->top = y;
        int covered = 0;
        for (size_t height = 1; height < least; ++height) {
            covered += counts[height - 1];
            if (!isNearlyAll(covered))
                continue;
            line = Rows{y, y + static_cast<int>(height) - 1};
            least = height;
        }
    }
    return line;
}

/// What is left of a mark above its line, counted from the mark's corner.
std::vector<Extent> piecesAbove(const Mark& mark, const Rows& line) {
    const int width = mark.box.width();
    const auto hasInk = [&](size_t i) {
        return mark.hasInk(
            mark.box.left() + static_cast<int>(i) % width, mark.box.top() + static_cast<int>(i) / width);
    };
    return extentsOf(connect(
        width, line.top - mark.box.top(), Neighbours::eight, hasInk, [](size_t, size_t) { return true; }));
}

/// A frame without its upper edge, or such a row of a table: uprights only, that enclose what is between them
/// or are cut by the picture's edge.
bool isOpenFrame(const Mark& mark, const std::vector<Extent>& pieces, int unit) {
    const QRect& box = mark.box;
    bool isClosedLeft = box.left() == 0 || box.top() == 0;
    bool isClosedRight = box.right() == mark.all.width - 1 || box.top() == 0;
    for (const Extent& piece : pieces) {
        const int height = piece.box.height();
        const bool isUpright =
            piece.box.top() <= unit && piece.box.width() * 2 <= height && piece.area <= 3 * unit * height;
        if (!isUpright)
            return false;
        isClosedLeft = isClosedLeft || piece.box.left() <= unit;
        isClosedRight = isClosedRight || piece.box.right() >= box.width() - 1 - unit;
    }
    return isClosedLeft && isClosedRight;
}

/// The bar at the foot of a single large letter, as in "止" and "오".
bool isFootOfLetter(const Mark& mark, int area, const std::vector<Extent>& pieces, int unit) {
    const int width = mark.box.width();
    const int height = mark.box.height();
    // A finer letter would be lost as a frame; without its bar some of it is left.
    if (area * 100 <= 35 * width * height && area <= 5 * unit * (width + height))
        return false;
    if (width * 4 <= height * 5)
        return true;
    int ink = area;
    for (const Extent& piece : pieces)
        ink -= piece.area;
    const bool isThick = ink * 2 >= 5 * unit * width && ink * 8 >= height * width;
    if (isThick)
        return width <= 4 * height;
    const auto isPart = [unit](const Extent& piece) { return piece.box.height() > 2 * unit; };
    const auto first = std::find_if(pieces.begin(), pieces.end(), isPart);
    return width * 2 <= height * 5 && std::count_if(pieces.begin(), pieces.end(), isPart) == 1 &&
        first->box.width() * 3 > width;
}

}  // namespace

std::vector<bool> findUnderlines(const Labels& marks, int unit) {
    const int leastWidth = 40 * unit;
    const int leastHeight = 5 * unit;  // below it there is no room for letters
    const int mostHeight = 40 * unit;
    std::vector<bool> underlines;
    const std::vector<Extent> extents = extentsOf(marks);
    for (size_t i = 0; i < extents.size(); ++i) {
        const QRect& box = extents[i].box;
        if (box.width() < leastWidth || box.height() < leastHeight || box.height() > mostHeight)
            continue;
        const Mark mark{marks, static_cast<int>(i), box};
        const std::optional<Rows> line = findLine(mark, unit);
        if (!line)
            continue;
        const std::vector<Extent> pieces = piecesAbove(mark, *line);
        if (isOpenFrame(mark, pieces, unit) || isFootOfLetter(mark, extents[i].area, pieces, unit))
            continue;
        underlines.resize(marks.of.size());
        for (int x = box.left(); x <= box.right(); ++x) {
            // What hangs from a letter into the line, or through it, is the letter's.
            const int above = line->top - 1;
            if (mark.hasInk(x - 1, above) || mark.hasInk(x, above) || mark.hasInk(x + 1, above))
                continue;
            for (int y = line->top; y <= line->bottom; ++y)
                if (mark.hasInk(x, y))
                    underlines[marks.index(x, y)] = true;
        }
    }
    return underlines;
}

}  // namespace tralio
