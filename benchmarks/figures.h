#pragma once

#include <QString>

#include <vector>

namespace tralio {

/// What repeated measuring gave.
class Samples final {
public:
    void add(double value) { m_values.push_back(value); }

    [[nodiscard]] double percentile(int percent) const;
    /// The median, with the least and the most: "22.9 (22.8–23.1)".
    [[nodiscard]] QString text() const;

private:
    std::vector<double> m_values;
};

/// What a process and those that it has started hold of the memory, in MiB.
struct Memory {
    double proportional = 0;  ///< PSS: what is shared counts in part
    double unique = 0;        ///< USS: what would be free without them
    double resident = 0;      ///< RSS: what is shared counts whole, for each
};
[[nodiscard]] Memory memoryOf(qint64 processId);

/// How often the threads of a process and of those that it has started have been woken up to now.
[[nodiscard]] qint64 wakeUpsOf(qint64 processId);

}  // namespace tralio
