#include "programs/recogniser/marks/ink_colours.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <numeric>

namespace tralio {

double product(const Shift& a, const Shift& b) {
    return std::inner_product(a.begin(), a.end(), b.begin(), 0.0);
}

double likeness(const Shift& a, const Shift& b) {
    return product(a, b) / std::max(1.0, std::sqrt(product(a, a) * product(b, b)));
}

void add(Shift& sum, const Shift& shift) {
    std::ranges::transform(sum, shift, sum.begin(), std::plus());
}

std::vector<Shift> shiftsOf(const LabelledMark& mark, const TextMarks& marks) {
    const Channels& channels = marks.channels();
    const Channels& ground = marks.ground().colours();
    const int left = std::max(0, mark.box.left() - 1);
    const int right = std::min(mark.all.width - 1, mark.box.right() + 1);
    std::vector<Shift> rows(static_cast<size_t>(mark.box.height()));
    for (int y = mark.box.top(); y <= mark.box.bottom(); ++y) {
        Shift& row = rows[static_cast<size_t>(y - mark.box.top())];
        for (int x = left; x <= right; ++x)
            if (const int label = mark.all.at(x, y); label == mark.label || label == Labels::none)
                for (size_t i = 0; i < row.size(); ++i)
                    row[i] += channels[i].row(y)[x] - ground[i].row(y)[x];
    }
    return rows;
}

Shift shiftOf(const std::vector<Shift>& rows) {
    Shift sum{};
    for (const Shift& row : rows)
        add(sum, row);
    return sum;
}

bool goesOver(const LabelledMark& mark, const TextMarks& marks) {
    constexpr int leastRange = 32;
    constexpr size_t fewest = 12;
    const auto isInner = [&](int x, int y) {
        return mark.hasInk(x, y) && mark.hasInk(x - 2, y) && mark.hasInk(x + 2, y) && mark.hasInk(x, y - 2) &&
            mark.hasInk(x, y + 2);
    };
    std::array<std::vector<int>, 3> levels;
    for (int y = 0; y < mark.box.height(); ++y)
        for (int x = 0; x < mark.box.width(); ++x)
            for (size_t channel = 0; isInner(x, y) && channel < levels.size(); ++channel)
                levels[channel].push_back(
                    marks.channels()[channel].row(mark.box.top() + y)[mark.box.left() + x]);
    return levels[0].size() >= fewest && std::ranges::any_of(levels, [](std::vector<int>& of) {
        std::ranges::sort(of);
        return of[of.size() * 9 / 10] - of[of.size() / 10] >= leastRange;
    });
}

}  // namespace tralio
