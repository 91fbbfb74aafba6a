#include "programs/recogniser/pixels/window_median.h"

#include <algorithm>
#include <array>

namespace tralio {
namespace {

/// Counts of 256 values in two steps: by their upper four bits, and in full. Sixteen counts at a time are
/// added with a few vector instructions.
using Segment = std::array<quint16, 16>;

void add(Segment& to, const Segment& from) {
    for (size_t i = 0; i < to.size(); ++i)
        to[i] = static_cast<quint16>(to[i] + from[i]);
}

void subtract(Segment& from, const Segment& what) {
    for (size_t i = 0; i < from.size(); ++i)
        from[i] = static_cast<quint16>(from[i] - what[i]);
}

struct ColumnCounts {
    Segment coarse{};
    std::array<Segment, 16> fine{};

    void change(quint8 value, int by) {
        quint16& coarseCount = coarse[value >> 4];
        quint16& fineCount = fine[value >> 4][value & 15];
        coarseCount = static_cast<quint16>(coarseCount + by);
        fineCount = static_cast<quint16>(fineCount + by);
    }
};

/// Finds the segment or value at which `rank` values have been passed; `rank` goes down by those before it.
size_t locate(const Segment& counts, int& rank) {
    size_t i = 0;
    while (i + 1 < counts.size() && rank >= counts[i])
        rank -= counts[i++];
    return i;
}

/// The window that moves along one row. Its fine counts are brought up to date only where the median falls.
class Window {
public:
    Window(const std::vector<ColumnCounts>& columns, int radius)
        : m_columns(columns), m_last(static_cast<int>(columns.size()) - 1), m_radius(radius) {
        for (int x = 0; x < std::min(radius, m_last + 1); ++x)
            add(m_coarse, column(x).coarse);
    }

    quint8 medianAt(int x, int rows) {
        if (x + m_radius <= m_last)
            add(m_coarse, column(x + m_radius).coarse);
        if (x - m_radius - 1 >= 0)
            subtract(m_coarse, column(x - m_radius - 1).coarse);

        const int begin = std::max(0, x - m_radius);
        const int end = std::min(m_last, x + m_radius) + 1;
        int rank = ((end - begin) * rows - 1) / 2;
        const size_t upper = locate(m_coarse, rank);
        const size_t lower = locate(fineSegment(upper, begin, end), rank);
        return static_cast<quint8>(upper * 16 + lower);
    }

private:
    struct FineSegment {
        Segment counts{};
        int begin = 0;
        int end = 0;
    };

    [[nodiscard]] const ColumnCounts& column(int x) const { return m_columns[static_cast<size_t>(x)]; }

    const Segment& fineSegment(size_t upper, int begin, int end) {
        FineSegment& segment = m_fine[upper];
        if (segment.end <= begin)
            segment = {{}, begin, begin};
        for (; segment.begin < begin; ++segment.begin)
            subtract(segment.counts, column(segment.begin).fine[upper]);
        for (; segment.end < end; ++segment.end)
            add(segment.counts, column(segment.end).fine[upper]);
        return segment.counts;
    }

    const std::vector<ColumnCounts>& m_columns;
    int m_last;
    int m_radius;
    Segment m_coarse{};
    std::array<FineSegment, 16> m_fine{};
};

}  // namespace

Plane windowMedian(const Plane& source, int radiusX, int radiusY) {
    Plane result(source.width(), source.height());
    std::vector<ColumnCounts> columns(static_cast<size_t>(source.width()));
    const auto change = [&](int y, int by) {
        if (y < 0 || y >= source.height())
            return;
        const quint8* row = source.row(y);
        for (size_t x = 0; x < columns.size(); ++x)
            columns[x].change(row[x], by);
    };
    for (int y = 0; y < radiusY; ++y)
        change(y, 1);
    for (int y = 0; y < source.height(); ++y) {
        change(y + radiusY, 1);
        change(y - radiusY - 1, -1);
        const int rows = std::min(source.height() - 1, y + radiusY) - std::max(0, y - radiusY) + 1;
        Window window(columns, radiusX);
        quint8* out = result.row(y);
        for (int x = 0; x < source.width(); ++x)
            out[x] = window.medianAt(x, rows);
    }
    return result;
}

}  // namespace tralio
