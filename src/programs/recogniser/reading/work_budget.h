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

    /// Gives half of what is left for the picture to a reader on another thread, where `ofAnotherThread`
    /// makes its budget.
    void share() {
        const double started = std::exchange(m_started, now());
        m_forPicture = (m_forPicture - (m_started - started)) / 2;
        m_fruitless /= 2;
        m_share = 0.5;
    }
    [[nodiscard]] WorkBudget ofAnotherThread() const {
        WorkBudget other(m_meter);
        other.m_forPicture = m_forPicture;
        other.m_share = m_share;
        return other;
    }

    /// Of this thread, in seconds.
    [[nodiscard]] static double processorTime();

    [[nodiscard]] double now() const { return m_meter(); }

    /// Whether the picture may be read on at all.
    [[nodiscard]] bool allowsMore() const { return now() - m_started < m_forPicture; }

    /// Whether another engine may be tried on a badly read block; `since` is when the first such try began.
    /// A block outside photographs has a time allowance of its own, whatever was spent on the rest of the
    /// picture.
    [[nodiscard]] bool allowsFurtherLooks(double since, bool isInPhotograph) const {
        const double spent = now() - since;
        const bool hasOwn = !isInPhotograph && spent < forBlock && m_fruitless < forAllBlocks * m_share;
        return allowsMore() && (hasOwn || m_fruitless + spent < forFurtherLooks * m_share);
    }

    /// Charges the time since `since` to the picture: these tries improved nothing, so the block is probably
    /// not text.
    void addFruitless(double since) { m_fruitless += now() - since; }

private:
    static constexpr double forFurtherLooks = 5;
    static constexpr double forBlock = 1.2;
    static constexpr double forAllBlocks = 20;

    Meter m_meter;
    double m_started = m_meter();
    double m_forPicture = 120;
    double m_fruitless = 0;
    double m_share = 1;
};

}  // namespace tralio
