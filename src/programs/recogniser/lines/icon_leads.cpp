#include "programs/recogniser/lines/icon_leads.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

#include "programs/recogniser/pixels/boxes.h"

namespace tralio {

Type::Type(std::vector<QRect> letters) : base(footOf(letters)) {
    const auto high = letters.begin() + std::ssize(letters) * 3 / 4;
    std::ranges::nth_element(letters, high, {}, [](const QRect& letter) { return letter.height(); });
    height = high->height();
    highest = std::ranges::max(letters, {}, [](const QRect& letter) { return letter.height(); }).height();
}

PlaceIndex placesOf(const std::vector<TextLine>& lines) {
    PlaceIndex places;
    for (size_t i = 0; i < lines.size(); ++i)
        if (!lines[i].isShaded)
            places.add(i, lines[i].box);
    return places;
}

void dropUpTo(int right, TextLine& line) {
    const auto isBefore = [right](const QRect& mark) { return mark.left() <= right; };
    std::erase_if(line.letters, isBefore);
    std::erase_if(line.dots, isBefore);
    line.box = boxOf(line.marks());
}

std::vector<Lead> drawnLeads(
    const std::vector<TextLine>& lines, const std::vector<QRect>& drawings, const PlaceIndex& places) {
    constexpr int reach = 3;
    std::vector<Lead> leads;
    for (const QRect& drawing : drawings) {
        std::optional<Lead> nearest;
        places.visit(drawing.adjusted(0, 0, reach * drawing.height(), 0), [&](size_t i) {
            if (!shareRow(lines[i].box, drawing))
                return;
            for (const QRect& letter : lines[i].letters)
                if (letter.left() > drawing.right() &&
                    (!nearest || std::pair(letter.left(), i) < std::pair(nearest->textLeft, nearest->text)))
                    nearest = Lead{i, i, drawing, letter.left(), false, true, true};
        });
        if (nearest)
            leads.push_back(*nearest);
    }
    return leads;
}

}  // namespace tralio
