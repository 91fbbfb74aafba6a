#include "programs/recogniser/marks/leaders.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <tuple>

namespace tralio {
namespace {

bool isOfOneRow(const MarkShape& a, const MarkShape& b) {
    const auto row = [](const MarkShape& dot) {
        return std::tuple(dot.region, dot.kind, dot.colour, dot.box.top());
    };
    return row(a) == row(b);
}

bool isRound(const QRect& box) {
    return std::abs(box.width() - box.height()) <= 1;
}

bool isOfOneSize(const QRect& a, const QRect& b) {
    return std::abs(a.width() - b.width()) <= 1 && std::abs(a.height() - b.height()) <= 1;
}

}  // namespace

std::vector<std::vector<MarkShape>> takeLeaders(std::vector<MarkShape>& dots) {
    constexpr std::ptrdiff_t fewest = 6;
    constexpr int widestStep = 6;  // dots
    std::ranges::sort(dots, {}, [](const MarkShape& dot) {
        return std::tuple(dot.region, dot.kind, dot.colour, dot.box.top(), dot.box.left());
    });
    std::vector<std::vector<MarkShape>> leaders;
    std::vector<MarkShape> others;
    for (auto first = dots.begin(); first != dots.end();) {
        const auto continues = [&](const MarkShape& last, const MarkShape& next) {
            const int step = next.box.left() - last.box.left();
            return isOfOneRow(last, next) && isRound(next.box) && isOfOneSize(first->box, next.box) &&
                step <= widestStep * first->box.height() &&
                std::abs(step - (std::next(first)->box.left() - first->box.left())) <= 1;
        };
        auto last = std::next(first);
        while (last != dots.end() && isRound(first->box) && continues(*std::prev(last), *last))
            ++last;
        if (last - first >= fewest) {
            leaders.emplace_back(first, last);
            first = last;
        } else {
            others.push_back(*first++);  // such as the lower dot of ":"
        }
    }
    dots = std::move(others);
    return leaders;
}

}  // namespace tralio
