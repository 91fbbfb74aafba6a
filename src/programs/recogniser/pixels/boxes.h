#pragma once

#include <QRect>
#include <QRectF>

#include <algorithm>
#include <iterator>
#include <vector>

namespace tralio {

/// In how many rows of pixels both boxes are; negative for the rows between them.
inline int sharedHeight(const QRect& a, const QRect& b) {
    return std::min(a.bottom(), b.bottom()) - std::max(a.top(), b.top()) + 1;
}

/// Whether two boxes stand side by side, as those of one line do.
inline bool shareRow(const QRect& a, const QRect& b) {
    return sharedHeight(a, b) * 2 >= std::min(a.height(), b.height());
}

/// The columns of pixels between two boxes; negative for those that both have.
inline int horizontalGap(const QRect& a, const QRect& b) {
    return std::max(a.left(), b.left()) - std::min(a.right(), b.right()) - 1;
}

/// What contains all of them.
inline QRect boxOf(const std::vector<QRect>& marks) {
    QRect box;
    for (const QRect& mark : marks)
        box |= mark;
    return box;
}

/// The lower edge that most letters have.
inline int footOf(std::vector<QRect> letters) {
    const auto middle = letters.begin() + std::ssize(letters) / 2;
    std::ranges::nth_element(letters, middle, {}, [](const QRect& letter) { return letter.bottom(); });
    return middle->bottom();
}

/// Those whose middle is within the box, from the left.
[[nodiscard]] inline std::vector<QRect> marksIn(const QRectF& box, const std::vector<QRect>& marks) {
    std::vector<QRect> inside;
    std::ranges::copy_if(
        marks, std::back_inserter(inside),
        [&](const QRect& mark) { return box.contains(QRectF(mark).center()); });
    std::ranges::sort(inside, {}, [](const QRect& mark) { return mark.left(); });
    return inside;
}

}  // namespace tralio
