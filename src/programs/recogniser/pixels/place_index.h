#pragma once

#include <QRect>

#include <algorithm>
#include <unordered_map>
#include <vector>

namespace tralio {

/// Finds which of many things have a place near another, without looking at all of them: a picture of leaves
/// or of a crowd has a hundred thousand marks.
class PlaceIndex final {
public:
    /// `item` is found wherever this place reaches, beside the places that it was given before.
    void add(size_t item, const QRect& place) {
        const QRect cells = cellsOf(place);
        if (item >= m_latest.size())
            m_latest.resize(item + 1);
        if (m_latest[item].contains(cells))
            return;
        m_latest[item] = cells;
        for (int y = cells.top(); y <= cells.bottom(); ++y)
            for (int x = cells.left(); x <= cells.right(); ++x)
                m_entries[key(x, y)].push_back({item, cells.topLeft()});
    }

    /// Visits every item with a place that meets this one, and others from about there; in no order, and some
    /// of them more than once.
    template <typename Visit>
    void visit(const QRect& place, Visit visit) const {
        const QRect cells = cellsOf(place);
        for (int y = cells.top(); y <= cells.bottom(); ++y) {
            for (int x = cells.left(); x <= cells.right(); ++x) {
                const auto cell = m_entries.find(key(x, y));
                if (cell == m_entries.end())
                    continue;
                for (const Entry& entry : cell->second)
                    // In the first of the cells that both have.
                    if (x == std::max(cells.left(), entry.first.x()) &&
                        y == std::max(cells.top(), entry.first.y()))
                        visit(entry.item);
            }
        }
    }

private:
    struct Entry {
        size_t item;
        QPoint first;  ///< of the cells of its place
    };

    /// Of pixels; negative coordinates are those of places that reach beyond the picture.
    static constexpr int cellSize = 64;

    static QRect cellsOf(const QRect& place) {
        const auto cell = [](int coordinate) { return std::max(0, coordinate) / cellSize; };
        return {
            QPoint(cell(place.left()), cell(place.top())), QPoint(cell(place.right()), cell(place.bottom()))};
    }
    static quint64 key(int x, int y) { return quint64(quint32(y)) << 32 | quint32(x); }

    std::unordered_map<quint64, std::vector<Entry>> m_entries;
    std::vector<QRect> m_latest;  ///< cells, by the item
};

}  // namespace tralio
