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

}  // namespace tralio
