#pragma once

#include <functional>
#include <utility>

namespace tralio {

/// How much work a picture is worth. Processor time counts: on a busy machine no less text is found.
class WorkBudget final {
public:
    /// Tells the work done until now, in seconds.
    using Meter = std::function<double()>;

    explicit WorkBudget(Meter meter = processorTime) : m_meter(std::move(meter)) {}

    /// Of this process, in seconds.
    [[nodiscard]] static double processorTime();

    [[nodiscard]] double now() const { return m_meter(); }

    /// Whether the picture may be read on at all.
    [[nodiscard]] bool allowsMore() const { return now() - m_started < forPicture; }

    /// Whether there may be another look at what was read ill; `since` is when such looks at it began. What
    /// is no part of a photograph has some time of its own, whatever was spent on other parts of the picture.
    [[nodiscard]] bool allowsFurtherLooks(double since, bool isInPhotograph) const {
        const double spent = now() - since;
        const bool hasOwn = !isInPhotograph && spent < forBlock && m_fruitless < forAllBlocks;
        return allowsMore() && (hasOwn || m_fruitless + spent < forFurtherLooks);
    }

    /// Further looks since then have brought nothing: what reads so badly is hardly text.
    void addFruitless(double since) { m_fruitless += now() - since; }

private:
    static constexpr double forPicture = 120;
    static constexpr double forFurtherLooks = 5;
    static constexpr double forBlock = 1.2;
    static constexpr double forAllBlocks = 20;

    Meter m_meter;
    double m_started = m_meter();
    double m_fruitless = 0;
};

}  // namespace tralio
