#include "programs/recogniser/lines/icon_rows.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <span>

#include "programs/recogniser/lines/icon_leads.h"
#include "programs/recogniser/pixels/boxes.h"
#include "programs/recogniser/pixels/sorted.h"

namespace tralio {
namespace {

constexpr int leastSide = 8;
constexpr int fewest = 2;
constexpr int reach = 8;

/// Twice the height of a box's middle.
int middleOf(const QRect& box) {
    return box.top() + box.bottom();
}

bool isAlike(const QRect& a, const QRect& b, int tolerance) {
    return std::abs(middleOf(a) - middleOf(b)) <= 2 * tolerance &&
        std::abs(a.height() - b.height()) <= tolerance && std::abs(a.width() - b.width()) <= tolerance;
}

/// Those of some boxes, sorted by their middles, that are in a row with a box.
template <typename T, typename Middle>
std::span<const T> rowOf(const std::vector<T>& sorted, const QRect& box, int unit, Middle middle) {
    return nearTo(middleOf(box), sorted, reach * unit, middle);
}

/// The icons of labels, by their middles.
std::vector<Lead> labelIcons(
    const std::vector<TextLine>& lines, const std::vector<QRect>& drawings, int unit) {
    std::vector<Lead> icons = drawnLeads(lines, drawings, placesOf(lines));
    for (size_t i = 0; i < lines.size(); ++i)
        for (const QRect& icon : lines[i].unread)
            if (const int left = lines[i].box.left(); !lines[i].isShaded && icon.right() < left)
                icons.push_back({i, i, icon, left, false, true, true});
    std::erase_if(
        icons, [unit](const Lead& icon) { return icon.box.height() < leastSide * unit; });
    std::ranges::sort(icons, {}, [](const Lead& icon) { return middleOf(icon.box); });
    return icons;
}

/// What a line begins with, as wide as an icon.
QRect leadOf(const std::vector<QRect>& marks, int width) {
    QRect lead;
    for (const QRect& mark : marks)
        if (mark.right() < marks.front().left() + width)
            lead |= mark;
    return lead;
}

/// The box of a line's icon that is like others in its row, or none.
QRect iconOf(const TextLine& line, const std::vector<Lead>& icons, int unit) {
    const std::vector<QRect> marks = line.marks();
    int likeIt = 0;
    QRect found;
    for (const Lead& icon :
        rowOf(icons, line.box, unit, [](const Lead& lead) { return middleOf(lead.box); })) {
        const QRect lead = leadOf(marks, icon.box.width() + 3 * unit);
        const auto isBehind = [&](const QRect& mark) { return mark.left() > lead.right(); };
        std::vector<QRect> letters;
        std::ranges::copy_if(line.letters, std::back_inserter(letters), isBehind);
        const auto next = std::ranges::find_if(marks, isBehind);
        if (letters.size() < 2 || next->left() <= lead.right() + 2 * unit ||
            !isAlike(lead, icon.box, 3 * unit))
            continue;
        const Type type(letters);
        const int gap = next->left() - lead.right() - (icon.textLeft - icon.box.right());
        if (lead.bottom() <= type.base || lead.top() > type.base - type.height ||
            lead.height() < type.height + 2 * unit || std::abs(gap) > 2 * unit)
            continue;
        found = lead;
        ++likeIt;
    }
    return likeIt >= fewest ? found : QRect();
}

/// The same in a column: what stands above the others' icons and the gap behind them, and is no letter.
QRect iconOfColumn(const TextLine& line, const std::vector<Lead>& icons, int unit) {
    const std::vector<QRect> marks = line.marks();
    const int left = line.box.left();
    int likeIt = 0;
    QRect found;
    const auto leftOf = [](const Lead& icon) { return icon.box.left(); };
    for (const Lead& icon : nearTo(left, icons, reach * unit, leftOf)) {
        const QRect lead = leadOf(marks, icon.box.right() + 2 * unit - left);
        const auto isBehind = [&](const QRect& mark) { return mark.left() > lead.right(); };
        std::vector<QRect> letters;
        std::ranges::copy_if(line.letters, std::back_inserter(letters), isBehind);
        // The strokes of a Chinese sign are not all letters.
        const auto next = std::ranges::find_if(marks, isBehind);
        if (letters.size() < 2 || lead.isNull() || left < icon.box.left() - 2 * unit ||
            std::abs(next->left() - icon.textLeft) > 3 * unit || next->left() - lead.right() <= 2 * unit)
            continue;
        const Type type(letters);
        if (lead.bottom() <= type.base || lead.top() > type.base - type.height + 1 ||
            lead.width() * 10 < lead.height() * 7 || lead.height() < type.height + 2 * unit)
            continue;
        found = lead;
        ++likeIt;
    }
    return likeIt >= fewest ? found : QRect();
}

void setAside(TextLine& line, const QRect& icon) {
    line.unread.push_back(icon);
    dropUpTo(icon.right(), line);
}

}  // namespace

void setIconRowsAside(std::vector<TextLine>& lines, const std::vector<QRect>& drawings, int unit) {
    constexpr int leastAlone = 12;
    constexpr size_t fewPieces = 4;
    std::vector<Lead> icons = labelIcons(lines, drawings, unit);
    std::vector<QRect> sorted = drawings;
    std::ranges::sort(sorted, {}, middleOf);
    std::erase_if(lines, [&](const TextLine& line) {
        const QRect box = boxOf(line.marks());
        const auto isLikeIt = [&](const QRect& drawing) { return isAlike(drawing, box, unit); };
        const auto row = rowOf(sorted, box, unit, middleOf);
        return !line.isShaded && line.letters.size() <= fewPieces &&
            std::min(box.width(), box.height()) >= leastAlone * unit &&
            std::count_if(row.begin(), row.end(), isLikeIt) >= fewest;
    });
    if (std::ssize(icons) < fewest)
        return;
    for (TextLine& line : lines)
        if (!line.isShaded)
            if (const QRect icon = iconOf(line, icons, unit); !icon.isNull())
                setAside(line, icon);
    std::ranges::sort(icons, {}, [](const Lead& icon) { return icon.box.left(); });
    for (TextLine& line : lines)
        if (!line.isShaded)
            if (const QRect icon = iconOfColumn(line, icons, unit); !icon.isNull())
                setAside(line, icon);
}

}  // namespace tralio
