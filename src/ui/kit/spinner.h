#pragma once

#include <QBasicTimer>
#include <QWidget>

#include "ui/kit/colors.h"

namespace tralio {

/// Eight spokes that turn once in 800 ms while visible; while hidden, it causes no wake-ups.
class Spinner final : public QWidget {
    Q_OBJECT

public:
    /// `box` is the side in logical pixels: 14 in buttons, 12 elsewhere.
    explicit Spinner(int box, ColorRole role = ColorRole::accentIcon, QWidget* parent = nullptr);

    void setColor(ColorRole role);
    [[nodiscard]] bool isTurning() const { return m_timer.isActive(); }
    [[nodiscard]] QSize sizeHint() const override { return {m_box, m_box}; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    int m_box;
    ColorRole m_role;
    QBasicTimer m_timer;
    int m_step = 0;
};

}  // namespace tralio
