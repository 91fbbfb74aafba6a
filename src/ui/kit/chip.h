#pragma once

#include "ui/kit/control.h"

namespace tralio {

/// A chip in the footer: a dot and a word that say whether something works. Only one that reports trouble can
/// be clicked and focused.
class Chip final : public Control {
    Q_OBJECT

public:
    enum class State { good, trouble };

    explicit Chip(const QString& title, QWidget* parent = nullptr);

    [[nodiscard]] State state() const { return m_state; }
    void setState(State state);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    State m_state = State::good;
};

}  // namespace tralio
