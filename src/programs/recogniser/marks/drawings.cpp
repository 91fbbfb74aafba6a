#include "programs/recogniser/marks/drawings.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "programs/recogniser/marks/drawn_signs.h"
#include "programs/recogniser/marks/ink_colours.h"
#include "programs/recogniser/pixels/boxes.h"

namespace tralio {
namespace {

/// Whether half of it is in rows of other colours than the whole.
bool isColourful(const std::vector<Shift>& rows) {
    constexpr double alike = 0.94;
    const Shift whole = shiftOf(rows);
    double all = 0;
    double others = 0;
    for (const Shift& row : rows) {
        const double strength = std::sqrt(product(row, row));
        all += strength;
        others += likeness(row, whole) < alike ? strength : 0;
    }
    return others * 2 >= all && all > 0;
}

/// The marks of a picture, as far as they may be drawings.
class Finder final {
public:
    Finder(const Labels& ink, const std::vector<Extent>& extents, const TextMarks& marks)
        : m_ink(ink),
          m_all(extents),
          m_marks(marks),
          m_unit(marks.unit()),
          m_squares(largestSquaresOf(ink)),
          m_areDrawings(extents.size()) {}

    std::vector<bool> find() {
        constexpr int largest = 48;
        constexpr int least = 5;
        std::vector<size_t> crosses;
        std::vector<size_t> icons;
        std::vector<size_t> colourful;
        for (size_t i = 0; i < m_all.size(); ++i) {
            const int side = std::max(boxOf(i).width(), boxOf(i).height());
            if (side > largest * m_unit || side < least * m_unit)
                continue;
            const LabelledMark mark = markAt(i);
            if (isCheckBox(mark, m_all[i].area, m_unit))
                setWithInside(i);
            else if (isBlob(i) || (isArrowhead(mark) && !isAccent(i)) || (isTick(mark) && isApart(i, 0.5)))
                m_areDrawings[i] = true;
            else if (isDrawnCross(mark) && isApart(i, 1))
                crosses.push_back(i);
            else if (mayBeIcon(i))
                icons.push_back(i);
        }
        for (const size_t i : icons)
            if (isColourful(shiftsOf(markAt(i), m_marks)))
                colourful.push_back(i);
            else if (differsFromText(i))
                m_areDrawings[i] = true;
        // A camera gives letters several colours as well.
        if (!m_marks.ground().hasShades() && colourful.size() * 3 <= icons.size() + 2)
            for (const size_t i : colourful)
                m_areDrawings[i] = true;
        // In the cells of a column, "×" is an answer.
        for (const size_t i : crosses)
            m_areDrawings[i] = std::ranges::none_of(crosses, [&](size_t other) {
                return other != i && std::abs(boxOf(other).center().x() - boxOf(i).center().x()) <= m_unit;
            });
        setLettersOfDiscs();
        setSmallPieces();
        return std::move(m_areDrawings);
    }

private:
    [[nodiscard]] const QRect& boxOf(size_t mark) const { return m_all[mark].box; }
    [[nodiscard]] LabelledMark markAt(size_t mark) const {
        return {m_ink, static_cast<int>(mark), boxOf(mark)};
    }

    /// Ticks and what windows have on their buttons are as wide as high; digits, as on those that turn to a
    /// page, are not.
    void setWithInside(size_t frame) {
        m_areDrawings[frame] = true;
        for (size_t i = 0; i < m_all.size(); ++i)
            if (boxOf(frame).contains(boxOf(i)) && boxOf(i).width() * 4 >= boxOf(i).height() * 3)
                m_areDrawings[i] = true;
    }

    /// An "i" or an "!" that is all that a disc or a badge has.
    void setLettersOfDiscs() {
        constexpr int leastSide = 14;
        constexpr int mostSide = 44;

        const Ground& ground = m_marks.ground();
        Labels regions{m_ink.width, m_ink.height, {}, 0};
        regions.of.reserve(m_ink.of.size());
        for (int y = 0; y < m_ink.height; ++y)
            for (int x = 0; x < m_ink.width; ++x)
                regions.of.push_back(ground.regionAt({x, y}));
        regions.count = *std::ranges::max_element(regions.of) + 1;
        for (const Extent& region : extentsOf(regions)) {
            const auto [low, high] = std::minmax({region.box.width(), region.box.height()});
            if (region.area == 0 || low < leastSide * m_unit || high > mostSide * m_unit ||
                high * 10 > low * 12)
                continue;
            const int rim = low / 8;  // pieces of which are blurred
            const QRect within = region.box.adjusted(rim, rim, -rim, -rim);
            std::vector<size_t> inside;
            for (size_t i = 0; i < m_all.size(); ++i)
                if (within.contains(boxOf(i)))
                    inside.push_back(i);
            if (inside.size() == 2 && isDottedStem(boxOf(inside[0]), boxOf(inside[1])))
                m_areDrawings[inside[0]] = m_areDrawings[inside[1]] = true;
        }
    }

    [[nodiscard]] static bool isDottedStem(const QRect& a, const QRect& b) {
        const auto [dot, stem] = a.height() < b.height() ? std::pair(a, b) : std::pair(b, a);
        return stem.width() * 2 <= stem.height() && dot.height() * 2 <= stem.height() &&
            dot.width() <= stem.width() + 2 && horizontalGap(dot, stem) < 0 && sharedHeight(dot, stem) <= 0;
    }

    /// Of icons, that would be dots of the text beside.
    void setSmallPieces() {
        constexpr int small = 4;
        std::vector<QRect> boxes;
        for (size_t i = 0; i < m_all.size(); ++i)
            if (m_areDrawings[i])
                boxes.push_back(boxOf(i).adjusted(-m_unit, -m_unit, m_unit, m_unit));
        for (size_t i = 0; i < m_all.size(); ++i)
            if (std::max(boxOf(i).width(), boxOf(i).height()) <= small * m_unit &&
                std::ranges::any_of(boxes, [&](const QRect& box) { return box.contains(boxOf(i)); }))
                m_areDrawings[i] = true;
    }

    /// Whether nothing stands beside it nearer than that share of its width.
    [[nodiscard]] bool isApart(size_t mark, double widths) const {
        return std::ranges::none_of(
            m_all,
            [&](const Extent& other) {
                const int gap = horizontalGap(other.box, boxOf(mark));
                return shareRow(other.box, boxOf(mark)) && gap >= 0 && gap < widths * boxOf(mark).width();
            });
    }

    /// Whether a letter stands beneath it.
    [[nodiscard]] bool isAccent(size_t mark) const {
        const QRect& box = boxOf(mark);
        return std::ranges::any_of(m_all, [&](const Extent& other) {
            const int below = other.box.top() - box.bottom();
            return horizontalGap(other.box, box) < 0 && below > 0 && below <= 2 * box.height() &&
                other.box.height() * 5 >= box.height() * 6 && other.box.height() <= 8 * box.height();
        });
    }

    /// Whether it may be a dot of a letter that is that much larger.
    [[nodiscard]] bool isBesideLarge(size_t mark) const {
        const QRect& box = boxOf(mark);
        const int reach = 2 * std::max(box.width(), box.height());
        return std::ranges::any_of(m_all, [&](const Extent& other) {
            return other.box.height() * 2 >= 3 * box.height() && other.box.height() <= 8 * box.height() &&
                !other.box.contains(box) && horizontalGap(other.box, box) <= reach &&
                -sharedHeight(other.box, box) <= reach;
        });
    }

    /// Whether it may be a letter of a word.
    [[nodiscard]] bool isBesideAlike(size_t mark) const {
        const QRect& box = boxOf(mark);
        return std::ranges::any_of(m_all, [&](const Extent& other) {
            const int gap = horizontalGap(other.box, box);
            return gap >= 0 && gap < box.height() && std::abs(other.box.top() - box.top()) <= m_unit &&
                std::abs(other.box.bottom() - box.bottom()) <= m_unit;
        });
    }

    /// Too thick for a letter of its size: a disc, a switch, a folder.
    [[nodiscard]] bool isBlob(size_t mark) const {
        constexpr int leastSide = 9;
        constexpr int leastSwitch = 14;
        const QRect& box = boxOf(mark);
        const int square = m_squares[mark];
        const auto [low, high] = std::minmax({box.width(), box.height()});
        // Bold letters are thick where their strokes meet, the more so the smaller they are.
        const int share = low >= leastSwitch * m_unit ? 50 : 60;
        const bool isThick =
            low >= leastSide * m_unit && high * 10 <= low * 16 && square * 100 >= high * share;
        const bool isSwitch = low >= leastSwitch * m_unit && box.width() * 10 >= box.height() * 14 &&
            high * 10 <= low * 22 && square * 10 >= low * 6;
        return (isThick || isSwitch) && !isBesideLarge(mark) &&
            (square * 100 >= high * 65 || !isBesideAlike(mark));
    }

    [[nodiscard]] bool mayBeIcon(size_t mark) const {
        constexpr int leastSide = 9;
        const auto [low, high] = std::minmax({boxOf(mark).width(), boxOf(mark).height()});
        return low >= leastSide * m_unit && high <= 2 * low;
    }

    /// Whether nothing that it could belong to stands before it.
    [[nodiscard]] bool isFirst(size_t mark) const {
        const QRect& box = boxOf(mark);
        return std::ranges::none_of(m_all, [&](const Extent& other) {
            const int gap = box.left() - other.box.right();
            return gap >= 0 && gap < box.height() && shareRow(other.box, box) &&
                other.box.height() * 2 >= box.height() && other.box.height() <= 2 * box.height();
        });
    }

    /// Whether it stands before a text of another colour, higher and lower than the letters of that.
    [[nodiscard]] bool differsFromText(size_t icon) const {
        constexpr double otherColour = 0.96;
        const QRect& box = boxOf(icon);
        std::vector<QRect> letters;
        Shift text{};
        for (size_t i = 0; i < m_all.size(); ++i) {
            const QRect& other = boxOf(i);
            const int gap = other.left() - box.right();
            if (gap <= 0 || gap > 4 * box.height() || !shareRow(other, box) ||
                other.height() * 3 < box.height() || other.height() * 10 > box.height() * 12)
                continue;
            if (other.bottom() < box.center().y() || other.top() > box.center().y())
                return false;  // one of several lines beside a large initial
            letters.push_back(other);
            add(text, shiftOf(shiftsOf(markAt(i), m_marks)));
        }
        if (letters.size() < 2)
            return false;
        const int top = std::ranges::min_element(
            letters, {},
            [](const QRect& r) {
                return r.top();
            })->top();
        const int left = std::ranges::min_element(
            letters, {},
            [](const QRect& r) {
                return r.left();
            })->left();
        const auto isBetween = [&](const Extent& other) {  // as the colon of "Q:"
            return other.box.left() > box.right() && other.box.right() < left && shareRow(other.box, box);
        };
        if (std::ranges::any_of(m_all, isBetween))
            return false;
        // Chinese signs are a little higher and lower than figures, and so is "Q" than other letters.
        const int beyond = std::max(2 * m_unit, box.height() / 8);
        return top - box.top() >= beyond && box.bottom() - footOf(letters) >= beyond && isFirst(icon) &&
            (left - box.right()) * 6 > box.height() &&
            likeness(shiftOf(shiftsOf(markAt(icon), m_marks)), text) < otherColour;
    }

    const Labels& m_ink;
    const std::vector<Extent>& m_all;
    const TextMarks& m_marks;
    int m_unit;
    std::vector<int> m_squares;
    std::vector<bool> m_areDrawings;
};

}  // namespace

std::vector<bool> findDrawings(
    const Labels& ink, const std::vector<Extent>& extents, const TextMarks& marks) {
    return Finder(ink, extents, marks).find();
}

}  // namespace tralio
