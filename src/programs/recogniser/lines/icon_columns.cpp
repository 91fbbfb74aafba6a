#include "programs/recogniser/lines/icon_columns.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <optional>
#include <utility>

#include "programs/recogniser/lines/icon_leads.h"
#include "programs/recogniser/pixels/boxes.h"
#include "programs/recogniser/pixels/sorted.h"

namespace tralio {
namespace {

bool mayBeIcon(const QRect& box, const Type& type) {
    return box.width() * 10 <= type.highest * 22 && box.width() * 2 >= type.height &&
        box.height() <= 3 * type.height;
}

/// Letters go beneath the line or above capitals, but not both. Brackets do, and are narrow.
bool isMisfit(const QRect& mark, const Type& type, bool isAlone) {
    const int below = mark.bottom() - type.base;
    const int above = type.base - type.height + 1 - mark.top();
    const bool isWide = mark.width() * 10 >= mark.height() * 7;
    const bool isAround = below >= 1 && above >= 1;
    return isWide && (isAround || (isAlone && below * 3 >= std::max(type.height, 8) && above >= -1));
}

/// As "Q:" and "1." have.
bool hasPointBehind(const std::vector<QRect>& dots, const QRect& sign, const Type& type) {
    return std::ranges::any_of(
        dots,
        [&](const QRect& dot) {
            return dot.left() * 2 > sign.left() + sign.right() &&
                dot.left() <= sign.right() + type.height / 2 && std::abs(dot.bottom() - type.base) <= 1;
        });
}

Lead leadOf(size_t line, size_t text, const std::vector<QRect>& marks, const Type& type, int textLeft) {
    const QRect all = boxOf(marks);
    const bool isAlone = marks.size() == 1;
    bool isWhole = true;
    for (int right = all.left(); const QRect& mark : marks) {
        isWhole = isWhole && mark.left() <= right;
        right = std::max(right, mark.right());
    }
    return {line, text, all, textLeft,
        isMisfit(all, type, isAlone) &&
            std::ranges::any_of(
                marks, [&](const QRect& mark) { return mark.width() * 10 >= all.width() * 6; }),
        isWhole};
}

std::optional<Lead> leadInside(size_t index, const TextLine& line) {
    constexpr size_t fewest = 2;
    std::vector<QRect> letters = line.letters;
    std::vector<QRect> lead;
    int right = letters.front().right();
    while (letters.size() > fewest && letters.front().left() <= right + 2) {
        right = std::max(right, letters.front().right());
        lead.push_back(letters.front());
        letters.erase(letters.begin());
    }
    const Type type(letters);
    const Lead found = leadOf(index, index, lead, type, letters.front().left());
    if (hasPointBehind(line.dots, found.box, type))
        return std::nullopt;
    const int gap = letters.front().left() - found.box.right() - 1;
    return gap * 2 >= type.height && mayBeIcon(found.box, type) ? std::optional(found) : std::nullopt;
}

std::optional<Lead> leadBeside(size_t index, const std::vector<TextLine>& lines, const PlaceIndex& places) {
    constexpr size_t most = 3;
    constexpr int reach = 5;
    const TextLine& own = lines[index];
    if (own.letters.size() > most)
        return std::nullopt;
    const TextLine* text = nullptr;
    const int furthest = 2 * reach * own.box.width();  // from letters that are twice as high as it is wide
    places.visit(own.box.adjusted(0, 0, furthest, 0), [&](size_t i) {
        const TextLine& line = lines[i];
        const int beyond = line.box.height() / 2;  // which a piece of an icon may be
        if (line.region == own.region && line.letters.size() >= 2 &&
            shareRow(line.box.adjusted(0, -beyond, 0, beyond), own.box) &&
            line.box.left() > own.box.right() &&
            (!text ||
                std::pair(line.box.left(), i) < std::pair(text->box.left(), size_t(text - lines.data()))))
            text = &line;
    });
    if (!text)
        return std::nullopt;
    const Type type(text->letters);
    if (hasPointBehind(own.dots, own.box, type))
        return std::nullopt;
    const int gap = text->box.left() - own.box.right() - 1;
    const Lead found =
        leadOf(index, static_cast<size_t>(text - lines.data()), own.letters, type, text->box.left());
    return gap * 2 >= type.height && gap <= reach * type.height && mayBeIcon(found.box, type)
        ? std::optional(found)
        : std::nullopt;
}

void setAside(std::vector<TextLine>& lines, const Lead& lead) {
    lines[lead.text].unread.push_back(lead.box);
    TextLine& line = lines[lead.line];
    const auto isPart = [&](const QRect& mark) { return mark.left() <= lead.box.right(); };
    std::ranges::copy_if(line.dots, std::back_inserter(lines[lead.text].unread), isPart);
    dropUpTo(lead.box.right(), line);
}

}  // namespace

void setIconColumnsAside(std::vector<TextLine>& lines, const std::vector<QRect>& drawings, int unit) {
    constexpr std::ptrdiff_t fewest = 2;
    const PlaceIndex places = placesOf(lines);
    std::vector<Lead> leads = drawnLeads(lines, drawings, places);
    for (size_t i = 0; i < lines.size(); ++i) {
        if (lines[i].isShaded)
            continue;
        if (const auto lead = leadBeside(i, lines, places))
            leads.push_back(*lead);
        else if (lines[i].letters.size() > 2)
            if (const auto inside = leadInside(i, lines[i]))
                leads.push_back(*inside);
    }
    const auto isOfColumn = [unit](const Lead& a, const Lead& b) {
        const bool isPiece = b.isDrawing && a.box.left() >= b.box.left() && a.box.right() <= b.box.right();
        return isPiece || std::abs(a.box.center().x() - b.box.center().x()) <= 2 * unit;
    };
    std::ranges::stable_sort(leads, {}, &Lead::textLeft);
    for (const Lead& lead : leads) {
        std::ptrdiff_t all = 0;
        std::ptrdiff_t misfits = 0;
        std::ptrdiff_t drawn = 0;
        if (lead.isDrawing)
            continue;
        for (const Lead& other : nearTo(lead.textLeft, leads, 3 * unit, &Lead::textLeft)) {
            if (!isOfColumn(lead, other))
                continue;
            ++(other.isDrawing ? drawn : all);
            misfits += other.isMisfit ? 1 : 0;
        }
        const bool isBesideDrawings = drawn > 0 && drawn + misfits >= fewest &&
            (drawn + misfits) * 4 >= all + drawn && (lead.isWhole || lead.isMisfit);
        if (isBesideDrawings || (misfits >= fewest && misfits * 3 >= all))
            setAside(lines, lead);
    }
    std::erase_if(lines, [](const TextLine& line) { return line.letters.empty(); });
}

}  // namespace tralio
