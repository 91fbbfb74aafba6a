#include "ocr/reading_order.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <utility>

namespace tralio {
namespace {

// The comparison is not transitive, so what comes out depends on which pairs a sort compares. The standard
// library's sorts differ from one another there, and may run out of bounds; the sort is therefore our own.

using Lines = std::vector<TextObservation>;
using Position = Lines::iterator;

constexpr std::ptrdiff_t mergeSortThreshold = 64;

bool readsBefore(const TextObservation& a, const TextObservation& b) {
    return tralio::readsBefore(a.boundingBox, b.boundingBox);
}

/// Straight insertion into [first, last), of which [first, unsorted) is in order already.
void insertInto(Position first, Position unsorted, Position last) {
    for (; unsorted != last; ++unsorted)
        for (Position place = unsorted; place != first && readsBefore(*place, *std::prev(place)); --place)
            std::iter_swap(place, std::prev(place));
}

/// Between 32 and 64, so that the number of runs is a power of two or just below.
std::ptrdiff_t minimumRunLength(std::ptrdiff_t count) {
    constexpr int keptBits = 6;
    const int droppedBits =
        std::max(0, static_cast<int>(std::bit_width(static_cast<quint64>(count))) - keptBits);
    const bool anyDropped = (count & ((std::ptrdiff_t(1) << droppedBits) - 1)) != 0;
    return (count >> droppedBits) + (anyDropped ? 1 : 0);
}

/// The end of the run that starts at `first`. A run that goes backwards comes out turned round.
Position findRun(Position first, Position last) {
    Position end = std::next(first);
    if (end == last)
        return end;
    const bool isDescending = readsBefore(*end, *first);
    do
        ++end;
    while (end != last && readsBefore(*end, *std::prev(end)) == isDescending);
    if (isDescending)
        std::reverse(first, end);
    return end;
}

/// Merges [first, middle) and [middle, last). The shorter run is set aside, and the merge goes from its end
/// of the range, so that an element of the later run passes an earlier one only when it is read before it.
void merge(Position first, Position middle, Position last) {
    if (middle - first < last - middle) {
        Lines earlier{std::move_iterator(first), std::move_iterator(middle)};
        Position next = earlier.begin();
        Position later = middle;
        Position out = first;
        while (next != earlier.end() && later != last)
            *out++ = std::move(readsBefore(*later, *next) ? *later++ : *next++);
        std::move(next, earlier.end(), out);
    } else {
        Lines later{std::move_iterator(middle), std::move_iterator(last)};
        Position next = later.end();
        Position earlier = middle;
        Position out = last;
        while (next != later.begin() && earlier != first)
            *--out = std::move(readsBefore(*std::prev(next), *std::prev(earlier)) ? *--earlier : *--next);
        std::move_backward(later.begin(), next, out);
    }
}

/// The runs found so far, as positions of their ends. Keeps their lengths falling fast enough, towards the
/// last one, that each merge joins runs of similar length.
class RunStack {
public:
    explicit RunStack(Position first) : m_bounds{first} {}

    void push(Position end) {
        m_bounds.push_back(end);
        while (const size_t upper = unbalancedPair())
            mergeWithPrevious(upper);
    }

    void mergeAll() {
        while (count() > 1)
            mergeWithPrevious(count() - 1);
    }

private:
    [[nodiscard]] size_t count() const { return m_bounds.size() - 1; }
    [[nodiscard]] std::ptrdiff_t length(size_t run) const { return m_bounds[run + 1] - m_bounds[run]; }

    /// The later run of a pair that is to be merged, or 0.
    [[nodiscard]] size_t unbalancedPair() const {
        if (count() < 2)
            return 0;
        const size_t top = count() - 1;
        const bool isUnbalanced = (top >= 3 && length(top - 3) <= length(top - 2) + length(top - 1)) ||
            (top >= 2 && length(top - 2) <= length(top - 1) + length(top));
        if (isUnbalanced)
            return length(top - 2) < length(top) ? top - 1 : top;
        return length(top - 1) <= length(top) ? top : 0;
    }

    void mergeWithPrevious(size_t run) {
        merge(m_bounds[run - 1], m_bounds[run], m_bounds[run + 1]);
        m_bounds.erase(m_bounds.begin() + static_cast<std::ptrdiff_t>(run));
    }

    std::vector<Position> m_bounds;
};

}  // namespace

bool readsBefore(const NormalizedRect& a, const NormalizedRect& b) {
    const double tolerance = std::max((a.height + b.height) * 0.5 * 0.4, leastRowTolerance);
    if (std::abs(a.midY() - b.midY()) <= tolerance)
        return a.minX() < b.minX();
    return a.midY() > b.midY();
}

void sortIntoReadingOrder(std::vector<TextObservation>& observations) {
    const Position last = observations.end();
    const std::ptrdiff_t count = std::ssize(observations);
    if (count < mergeSortThreshold) {
        insertInto(observations.begin(), observations.begin(), last);
        return;
    }
    const std::ptrdiff_t minimumRun = minimumRunLength(count);
    RunStack runs(observations.begin());
    for (Position first = observations.begin(); first != last;) {
        const Position end = findRun(first, last);
        const Position extended = std::max(end, first + std::min(minimumRun, last - first));
        insertInto(first, end, extended);
        runs.push(extended);
        first = extended;
    }
    runs.mergeAll();
}

}  // namespace tralio
