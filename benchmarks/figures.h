#pragma once

#include <QString>

#include <vector>

namespace tralio {

/// The values of repeated measurements.
class Samples final {
public:
    void add(double value) { m_values.push_back(value); }

    [[nodiscard]] double percentile(int percent) const;
    /// The median, with minimum and maximum: "22.9 (22.8–23.1)".
    [[nodiscard]] QString text() const;

private:
    std::vector<double> m_values;
};

/// The memory of processes, in MiB.
struct Memory {
    double proportional = 0;  ///< PSS: shared pages count in proportion
    double unique = 0;        ///< USS: the pages that would be free without these processes
    double resident = 0;      ///< RSS: shared pages count fully in every process
};
enum class Including : quint8 { itself, descendants };
[[nodiscard]] Memory memoryOf(qint64 processId, Including including = Including::descendants);

/// How often the threads of a process and of its descendants have been woken up so far.
[[nodiscard]] qint64 wakeUpsOf(qint64 processId);

}  // namespace tralio
