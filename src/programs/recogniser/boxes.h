#pragma once

#include <QRect>

#include <algorithm>
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

/// The lower edge that most letters have.
inline int footOf(std::vector<QRect> letters) {
    const auto middle = letters.begin() + std::ssize(letters) / 2;
    std::ranges::nth_element(letters, middle, {}, [](const QRect& letter) { return letter.bottom(); });
    return middle->bottom();
}

}  // namespace tralio
