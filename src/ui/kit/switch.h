#pragma once

#include <QVariantAnimation>

#include "ui/kit/control.h"

namespace tralio {

/// An on-off switch without a title: set a spoken caption. `toggled` reports every change, `clicked` only the
/// user's.
class Switch final : public Control {
    Q_OBJECT

public:
    explicit Switch(QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QVariantAnimation m_slide;
    qreal m_knob = 0;  ///< 0 off, 1 on
};

}  // namespace tralio
