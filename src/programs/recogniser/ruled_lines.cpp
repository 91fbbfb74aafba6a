#include "programs/recogniser/ruled_lines.h"

#include <algorithm>
#include <leptonica/allheaders.h>
#include <memory>
#include <vector>

namespace tralio {
namespace {

constexpr quint8 white = 255;
constexpr quint8 darkBelow = 160;
constexpr int rim = 1;  ///< pixels around a mark that its blur has reached

struct Destroy {
    void operator()(Pix* pix) const { pixDestroy(&pix); }
    void operator()(Boxa* boxes) const { boxaDestroy(&boxes); }
    void operator()(Pixa* pixes) const { pixaDestroy(&pixes); }
};
template <typename T>
using Owned = std::unique_ptr<T, Destroy>;

Owned<Pix> darkPixels(const Plane& marks) {
    Owned<Pix> pix(pixCreate(marks.width(), marks.height(), 1));
    if (!pix)
        return pix;
    for (int y = 0; y < marks.height(); ++y) {
        l_uint32* line = pixGetData(pix.get()) + static_cast<ptrdiff_t>(y) * pixGetWpl(pix.get());
        const quint8* row = marks.row(y);
        for (int x = 0; x < marks.width(); ++x)
            if (row[x] < darkBelow)
                SET_DATA_BIT(line, x);
    }
    return pix;
}

/// Where a connected group of dark pixels lies in the picture.
struct Extent {
    int left;
    int top;
    int width;
    int height;
    int area;
};

/// Letters are neither that long and thin nor that hollow.
bool isLineOrFrame(const Extent& extent, int unit) {
    const int longSide = std::max(extent.width, extent.height);
    const int shortSide = std::min(extent.width, extent.height);
    if (longSide < 40 * unit)
        return false;
    const bool isLine = shortSide <= 4 * unit;
    const bool isFrame = shortSide >= 12 * unit && extent.area <= 5 * unit * (extent.width + extent.height) &&
        extent.area * 100 <= 35 * extent.width * extent.height;
    return isLine || isFrame;
}

/// What stands around a button or a tooltip: a bar along an edge of the picture, or around a corner of it.
/// Text that the user's rectangle cuts touches one edge only, or is no bar.
bool isSurround(const Extent& extent, const Plane& marks, int unit) {
    const bool left = extent.left == 0;
    const bool right = extent.left + extent.width == marks.width();
    const bool top = extent.top == 0;
    const bool bottom = extent.top + extent.height == marks.height();
    const bool isUpright = top && bottom && extent.height >= 15 * unit &&
        (left || right || extent.area <= 3 * unit * extent.height);
    const bool isLevel = left && right && extent.width >= 40 * unit;
    const bool isCorner = (left || right) && (top || bottom);
    return isUpright || isLevel || isCorner;
}

bool isBar(const Extent& extent, int unit) {
    return extent.width <= 2 * unit && extent.height >= 8 * unit &&
        extent.area * 10 >= 9 * extent.width * extent.height;
}

/// A text cursor, or what is left of a frame: a bar that is the first or last thing in its row, higher than
/// what is written there and, other than an "l", reaching below the line that letters stand on.
bool isTextCursor(const Extent& bar, const std::vector<Extent>& all, int unit) {
    const int bottom = bar.top + bar.height;
    if (!isBar(bar, unit))
        return false;
    std::vector<int> feet;
    bool isFirst = true;
    bool isLast = true;
    for (const Extent& other : all) {
        const int middle = other.top + other.height / 2;
        const bool isInRow = middle >= bar.top && middle < bottom;
        if (!isInRow || (other.left == bar.left && other.top == bar.top))
            continue;
        if (other.height >= bar.height && !isBar(other, unit))
            return false;
        isFirst = isFirst && other.left > bar.left;
        isLast = isLast && other.left < bar.left;
        const bool isLetter = other.height * 10 >= 3 * bar.height;  // marks and dots have no foot
        if (isLetter)
            feet.push_back(other.top + other.height);
    }
    if (feet.empty() || !(isFirst || isLast))
        return false;
    const auto median = feet.begin() + static_cast<std::ptrdiff_t>(feet.size() / 2);
    std::nth_element(feet.begin(), median, feet.end());
    return (bottom - *median) * 8 >= bar.height;
}

/// Whitens the component and the blurred rim around it.
void erase(Plane& marks, Pix* component, int left, int top) {
    const int wordsPerLine = pixGetWpl(component);
    for (int y = 0; y < pixGetHeight(component); ++y) {
        const l_uint32* line = pixGetData(component) + static_cast<ptrdiff_t>(y) * wordsPerLine;
        for (int x = 0; x < pixGetWidth(component); ++x) {
            if (!GET_DATA_BIT(line, x))
                continue;
            const int fromY = std::max(0, top + y - rim);
            const int toY = std::min(marks.height() - 1, top + y + rim);
            const int fromX = std::max(0, left + x - rim);
            const int toX = std::min(marks.width() - 1, left + x + rim);
            for (int row = fromY; row <= toY; ++row)
                std::fill(marks.row(row) + fromX, marks.row(row) + toX + 1, white);
        }
    }
}

/// Whitens the same of a component that fills its box.
void eraseBox(Plane& marks, const Extent& box) {
    const int left = std::max(0, box.left - rim);
    const int right = std::min(marks.width(), box.left + box.width + rim);
    const int bottom = std::min(marks.height(), box.top + box.height + rim);
    for (int y = std::max(0, box.top - rim); y < bottom; ++y)
        std::fill(marks.row(y) + left, marks.row(y) + right, white);
}

}  // namespace

void eraseRules(Plane& marks, int unit) {
    constexpr int eightNeighbours = 8;
    const Owned<Pix> dark = darkPixels(marks);
    Pixa* found = nullptr;
    const Owned<Boxa> boxes(dark ? pixConnComp(dark.get(), &found, eightNeighbours) : nullptr);
    const Owned<Pixa> components(found);
    if (!boxes || !components)
        return;
    std::vector<Extent> extents;
    for (int i = 0; i < boxaGetCount(boxes.get()); ++i) {
        l_int32 x = 0, y = 0, width = 0, height = 0;
        boxaGetBoxGeometry(boxes.get(), i, &x, &y, &width, &height);
        const Owned<Pix> component(pixaGetPix(components.get(), i, L_CLONE));
        l_int32 area = 0;
        pixCountPixels(component.get(), &area, nullptr);
        const Extent extent{x, y, width, height, area};
        if (isLineOrFrame(extent, unit) || isSurround(extent, marks, unit))
            erase(marks, component.get(), x, y);
        else
            extents.push_back(extent);
    }
    for (const Extent& extent : extents)
        if (isTextCursor(extent, extents, unit))
            eraseBox(marks, extent);
}

int letterHeight(const Plane& marks) {
    constexpr int eightNeighbours = 8;
    constexpr int leastHeight = 4;  // dots and accents say nothing
    constexpr size_t leastCount = 4;
    const Owned<Pix> dark = darkPixels(marks);
    const Owned<Boxa> boxes(dark ? pixConnComp(dark.get(), nullptr, eightNeighbours) : nullptr);
    std::vector<int> heights;
    for (int i = 0; boxes && i < boxaGetCount(boxes.get()); ++i) {
        l_int32 width = 0, height = 0;
        boxaGetBoxGeometry(boxes.get(), i, nullptr, nullptr, &width, &height);
        if (height >= leastHeight)
            heights.push_back(height);
    }
    if (heights.size() < leastCount)
        return 0;
    const auto middle = heights.begin() + static_cast<std::ptrdiff_t>(heights.size() / 2);
    std::nth_element(heights.begin(), middle, heights.end());
    return *middle;
}

}  // namespace tralio
