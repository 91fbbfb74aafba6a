#include "programs/recogniser/marks/drawings.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "programs/recogniser/marks/drawn_signs.h"
#include "programs/recogniser/marks/ink_colours.h"
#include "programs/recogniser/marks/mark_neighbours.h"
#include "programs/recogniser/pixels/boxes.h"
#include "programs/recogniser/pixels/sorted.h"

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
          m_around(extents, m_unit),
          m_squares(largestSquaresOf(ink)),
          m_areDrawings(extents.size()) {}

    std::vector<bool> find() {
        constexpr int largest = 48;
        constexpr int least = 5;
        constexpr int leastBox = 11;
        constexpr int leastBoxAlone = 8;
        std::vector<size_t> crosses;
        std::vector<size_t> icons;
        std::vector<size_t> colourful;
        for (size_t i = 0; i < m_all.size(); ++i) {
            const int side = std::max(boxOf(i).width(), boxOf(i).height());
            if (side > largest * m_unit || side < least * m_unit)
                continue;
            const LabelledMark mark = markAt(i);
            if (isTick(mark) && setDoubleTick(i))
                continue;
            const bool isLoneBox = m_around.isAlone(i) && !m_around.isInside(i);
            if (isCheckBox(mark, m_all[i].area, m_unit, isLoneBox ? leastBoxAlone : leastBox) ||
                isRadioButton(i))
                setWithInside(i);
            else if (isBlob(i) || (isTick(mark) && m_around.isApart(i, 0.5)) ||
                (isArrowhead(mark) && !m_around.isAccent(i)) || (m_around.isAlone(i) && isLoneDrawing(i)))
                m_areDrawings[i] = true;
            else if (isDrawnCross(mark) && m_around.isApart(i, 1))
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
        const auto middleOf = [this](size_t cross) { return boxOf(cross).center().x(); };
        std::ranges::sort(crosses, {}, middleOf);
        for (const size_t i : crosses)
            m_areDrawings[i] = nearTo(middleOf(i), crosses, m_unit, middleOf).size() == 1;
        setLettersOfDiscs();
        setOutlines();
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
        for (const size_t i : m_around.within(boxOf(frame)))
            if (boxOf(i).width() * 4 >= boxOf(i).height() * 3)
                m_areDrawings[i] = true;
    }

    /// The second of two ticks is seen in part.
    bool setDoubleTick(size_t tick) {
        const QRect& box = boxOf(tick);
        const int beside = 2 * m_unit;
        for (const size_t i : m_around.at(box.adjusted(0, 0, beside, 0))) {
            const QRect& other = boxOf(i);
            if (other.right() <= box.right() || other.width() > box.width() ||
                std::abs(other.top() - box.top()) > m_unit || other.bottom() > box.bottom() + m_unit ||
                other.height() * 2 < box.height() || !m_around.isApart(i, 0.5))
                continue;
            m_areDrawings[tick] = m_areDrawings[i] = true;
            return true;
        }
        return false;
    }

    /// A ring with a dot in its middle.
    [[nodiscard]] bool isRadioButton(size_t ring) const {
        constexpr int leastSide = 10;
        const QRect& box = boxOf(ring);
        if (box.width() < leastSide * m_unit || box.width() != box.height())
            return false;
        std::vector<size_t> inside = m_around.within(box);
        std::erase(inside, ring);
        if (inside.size() != 1 || markAt(ring).hasInk(1, 1))  // as "回" has
            return false;
        const auto& [dot, area] = m_all[inside.front()];
        return dot.width() == dot.height() && dot.width() * 4 >= box.width() &&
            dot.width() * 5 <= box.width() * 3 && (dot.center() - box.center()).manhattanLength() <= 1 &&
            area * 4 >= dot.width() * dot.height() * 3;
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
            const std::vector<size_t> inside = m_around.within(within);
            if (inside.size() == 2 && isDottedStem(boxOf(inside[0]), boxOf(inside[1])))
                m_areDrawings[inside[0]] = m_areDrawings[inside[1]] = true;
        }
    }

    [[nodiscard]] static bool isDottedStem(const QRect& a, const QRect& b) {
        const auto [dot, stem] = a.height() < b.height() ? std::pair(a, b) : std::pair(b, a);
        return stem.width() * 2 <= stem.height() && dot.height() * 2 <= stem.height() &&
            dot.width() <= stem.width() + 2 && horizontalGap(dot, stem) < 0 && sharedHeight(dot, stem) <= 0;
    }

    /// Around drawings.
    void setOutlines() {
        constexpr int most = 4;
        constexpr int least = 12;
        const std::vector<bool> inner = m_areDrawings;
        for (size_t drawing = 0; drawing < inner.size(); ++drawing) {
            const QRect& box = boxOf(drawing);
            const int rim = most * m_unit;
            if (inner[drawing] && std::min(box.width(), box.height()) >= least * m_unit)
                for (const size_t i : m_around.within(box.adjusted(-rim, -rim, rim, rim)))
                    if (boxOf(i).contains(box))
                        m_areDrawings[i] = true;
        }
    }

    /// Of icons, that would be dots of the text beside: within them, or as a lid above them.
    void setSmallPieces() {
        constexpr int small = 4;
        const std::vector<bool> large = m_areDrawings;
        for (size_t drawing = 0; drawing < large.size(); ++drawing)
            if (large[drawing])
                for (const size_t i :
                    m_around.within(boxOf(drawing).adjusted(-m_unit, -m_unit, m_unit, m_unit)))
                    if (std::max(boxOf(i).width(), boxOf(i).height()) <= small * m_unit)
                        m_areDrawings[i] = true;
        for (size_t drawing = 0; drawing < large.size(); ++drawing)
            if (const QRect& box = boxOf(drawing); large[drawing] && box.height() > 2 * small * m_unit)
                for (const size_t i :
                    m_around.within(box.adjusted(-2 * m_unit, -(2 + small) * m_unit, 2 * m_unit, 0)))
                    if (boxOf(i).height() <= small * m_unit && boxOf(i).bottom() < box.top() &&
                        boxOf(i).width() * 2 > box.width())
                        m_areDrawings[i] = true;
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
        return (isThick || isSwitch) && !m_around.isBesideLarge(mark) &&
            (square * 100 >= high * 65 || !m_around.isBesideAlike(mark));
    }

    /// What would be a sign among others.
    [[nodiscard]] bool isLoneDrawing(size_t i) const {
        constexpr int leastThickness = 5;
        constexpr int leastPlus = 11;  // those of texts are smaller
        const LabelledMark mark = markAt(i);
        // A letter of large type has thick strokes, but not for its size.
        const bool isThick = m_squares[i] >= leastThickness * m_unit &&
            m_squares[i] * 3 >= std::max(mark.box.width(), mark.box.height());
        return (isChevron(mark) && !m_around.isAccent(i)) ||
            (mark.box.width() >= leastPlus * m_unit && isDrawnPlus(mark)) ||
            (isThick && !m_marks.ground().hasShades() && goesOver(mark, m_marks));
    }

    [[nodiscard]] bool mayBeIcon(size_t mark) const {
        constexpr int leastSide = 9;
        const auto [low, high] = std::minmax({boxOf(mark).width(), boxOf(mark).height()});
        return low >= leastSide * m_unit && high <= 2 * low;
    }

    /// Whether it stands before a text of another colour, higher and lower than the letters of that.
    [[nodiscard]] bool differsFromText(size_t icon) const {
        constexpr double otherColour = 0.96;
        const QRect& box = boxOf(icon);
        std::vector<QRect> letters;
        Shift text{};
        for (const size_t i : m_around.at(box.adjusted(0, 0, 4 * box.height(), 0))) {
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
        const auto isBetween = [&](size_t other) {  // as the colon of "Q:"
            return boxOf(other).left() > box.right() && boxOf(other).right() < left &&
                shareRow(boxOf(other), box);
        };
        if (std::ranges::any_of(m_around.at(QRect(box.topRight(), QPoint(left, box.bottom()))), isBetween))
            return false;
        // Chinese signs are a little higher and lower than figures, and so is "Q" than other letters.
        const int beyond = std::max(2 * m_unit, box.height() / 8);
        return top - box.top() >= beyond && box.bottom() - footOf(letters) >= beyond &&
            m_around.isFirst(icon) && (left - box.right()) * 6 > box.height() &&
            likeness(shiftOf(shiftsOf(markAt(icon), m_marks)), text) < otherColour;
    }

    const Labels& m_ink;
    const std::vector<Extent>& m_all;
    const TextMarks& m_marks;
    int m_unit;
    MarkNeighbours m_around;
    std::vector<int> m_squares;
    std::vector<bool> m_areDrawings;
};

}  // namespace

std::vector<bool> findDrawings(
    const Labels& ink, const std::vector<Extent>& extents, const TextMarks& marks) {
    return Finder(ink, extents, marks).find();
}

}  // namespace tralio
