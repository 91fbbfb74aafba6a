#include "programs/recogniser/bullets.h"

#include <algorithm>
#include <cstdlib>

#include "programs/recogniser/boxes.h"

namespace tralio {
namespace {

bool isBullet(const QRect& mark, int base, int letterHeight) {
    const int side = std::max(mark.width(), mark.height());
    return std::abs(mark.width() - mark.height()) * 5 <= side && side * 10 <= letterHeight * 6 &&
        base - mark.bottom() >= std::max(1, letterHeight / 8) && base - mark.top() < letterHeight;
}

}  // namespace

void setBulletAside(TextLine& line) {
    constexpr size_t fewest = 3;
    std::vector<QRect> marks = line.letters;
    marks.insert(marks.end(), line.dots.begin(), line.dots.end());
    if (line.letters.size() < fewest)
        return;
    std::ranges::sort(marks, {}, [](const QRect& mark) { return mark.left(); });
    const QRect first = marks.front();
    if (!isBullet(first, footOf(line.letters), line.letterHeight()) ||
        marks[1].left() - first.right() <= first.width())
        return;
    std::erase(line.letters, first);
    std::erase(line.dots, first);
    line.unread.push_back(first);
    line.box.setLeft(marks[1].left());
}

}  // namespace tralio
