#pragma once

#include <QString>

#include <algorithm>
#include <map>

namespace tralio {

/// Which further looks have come to nothing in the blocks of a picture so far. The blocks of a page are
/// alike: what several could not be read by will not help the next, unless that is read worse than those.
class VainLooks final {
public:
    /// Whether a look has come to nothing twice, in no worse blocks. `way` names an engine or a kind of
    /// picture, `confidence` is that of the reading it is to better.
    [[nodiscard]] bool isVain(const QString& way, double confidence) const {
        constexpr int often = 2;
        constexpr double worse = 8;
        const auto known = m_ways.find(way);
        return known != m_ways.end() && known->second.times >= often &&
            confidence > known->second.least - worse;
    }

    void add(const QString& way, double confidence, bool hasGained) {
        Vain& known = m_ways[way];
        known = hasGained ? Vain() : Vain{known.times + 1, std::min(known.least, confidence)};
    }

private:
    struct Vain {
        int times = 0;
        double least = 100;
    };
    std::map<QString, Vain> m_ways;
};

}  // namespace tralio
