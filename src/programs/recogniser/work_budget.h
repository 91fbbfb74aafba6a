#pragma once

namespace tralio {

/// How much work a picture is worth. Processor time counts: on a busy machine no less text is found.
class WorkBudget final {
public:
    /// Of this process until now, in seconds.
    [[nodiscard]] static double now();

    /// Whether the picture may be read on at all.
    [[nodiscard]] bool allowsMore() const { return now() - m_started < forPicture; }

    /// Whether there may be another look at what was read ill; `since` is when such looks at it began.
    [[nodiscard]] bool allowsFurtherLooks(double since) const {
        return allowsMore() && m_fruitless + now() - since < forFurtherLooks;
    }

    /// Further looks since then have brought nothing: what reads so badly is hardly text.
    void addFruitless(double since) { m_fruitless += now() - since; }

private:
    static constexpr double forPicture = 120;
    static constexpr double forFurtherLooks = 5;

    double m_started = now();
    double m_fruitless = 0;
};

}  // namespace tralio
