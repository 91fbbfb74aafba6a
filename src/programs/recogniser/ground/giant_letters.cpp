#include "programs/recogniser/ground/giant_letters.h"

#include <algorithm>
#include <iterator>

#include "programs/recogniser/pixels/boxes.h"

namespace tralio {
namespace {

class LetterFinder {
public:
    LetterFinder(const EvenGroups& groups, int unit) : m_groups(groups) {
        constexpr int leastHeight = 12;
        constexpr int leastPiece = 5;
        for (size_t i = 0; i < groups.count(); ++i) {
            const QRect& box = groups.extents[i].box;
            if (box.height() >= leastPiece * unit)
                m_pieces.push_back(i);
            if (groups.areDrawn[i] && box.height() >= leastHeight * unit &&
                isOpen(groups.extents[i], groups.rows[i]))
                m_open.push_back(i);
        }
    }

    /// Which of some groups are letters, or their dots.
    [[nodiscard]] std::vector<size_t> amid(const std::vector<size_t>& groups) const {
        std::vector<size_t> letters;
        std::vector<size_t> others;
        constexpr size_t mostPairs = 400'000'000;  // a pattern of rings, which would take minutes
        if (groups.size() * m_pieces.size() > mostPairs)
            return letters;
        for (const size_t group : groups)
            (isBesideLetters(group) ? letters : others).push_back(group);
        const std::vector<size_t> sure = letters;
        std::copy_if(others.begin(), others.end(), std::back_inserter(letters), [&](size_t group) {
            return std::any_of(
                       sure.begin(), sure.end(), [&](size_t letter) { return isPartOf(letter, group); }) &&
                !holdsMuch(group);
        });
        std::sort(letters.begin(), letters.end());
        return letters;
    }

private:
    static bool isOpen(const Extent& extent, const RowTally& rows) {
        const qint64 full = qint64(extent.box.width()) * extent.box.height();
        const bool isBar = rows.isFullAbove && rows.isFullBelow;
        const bool isRound = rows.spans * 100LL >= full * 74 && rows.spans * 100LL <= full * 83;
        return extent.area * 10LL < full * 6 || (extent.area * 10LL < full * 7 && !isBar && !isRound);
    }

    [[nodiscard]] bool isBesideLetters(size_t group) const {
        const auto tells = [&](size_t open) {
            return open != group && isBeside(group, open) && !holdsMuch(open);
        };
        return std::any_of(m_open.begin(), m_open.end(), tells) && !holdsMuch(group);
    }

    [[nodiscard]] bool isBeside(size_t group, size_t other) const {
        const QRect& a = m_groups.extents[group].box;
        const QRect& b = m_groups.extents[other].box;
        const auto isLike = [](int left, int right) {
            return left * 10 >= right * 6 && right * 10 >= left * 6;
        };
        return isLike(a.height(), b.height()) && isLike(m_groups.squares[group], m_groups.squares[other]) &&
            shareRow(a, b) && horizontalGap(a, b) <= a.height() &&
            areAlike(m_groups.colours[group], m_groups.colours[other]);
    }

    /// Whether a group is of the word that a letter is of.
    [[nodiscard]] bool isPartOf(size_t letter, size_t group) const {
        const QRect& box = m_groups.extents[letter].box;
        const int reach = box.height() / 2;
        return m_groups.extents[group].box.height() * 10 <= box.height() * 16 &&
            box.adjusted(-reach, -reach, reach, reach).intersects(m_groups.extents[group].box) &&
            areAlike(m_groups.colours[letter], m_groups.colours[group]);
    }

    [[nodiscard]] bool holdsMuch(size_t group) const {
        constexpr int most = 4;
        const QRect inside = m_groups.extents[group].box.adjusted(1, 1, -1, -1);
        return std::count_if(m_pieces.begin(), m_pieces.end(),
                   [&](size_t piece) { return inside.contains(m_groups.extents[piece].box); }) > most;
    }

    const EvenGroups& m_groups;
    std::vector<size_t> m_pieces;  ///< what may be a letter in a group, or the hole of one
    std::vector<size_t> m_open;
};

}  // namespace

std::vector<size_t> giantLetters(const EvenGroups& groups, const std::vector<size_t>& candidates, int unit) {
    return LetterFinder(groups, unit).amid(candidates);
}

}  // namespace tralio
