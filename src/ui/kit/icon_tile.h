#pragma once

#include <QWidget>

#include "ui/kit/colors.h"
#include "ui/kit/icon.h"

namespace tralio {

/// An icon on a small tinted square, before the title of a card. Not interactive.
class IconTile final : public QWidget {
    Q_OBJECT

public:
    /// `fill` is one of the badge colours.
    IconTile(const Icon& icon, ColorRole role, ColorRole fill, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Icon m_icon;
    ColorRole m_role;
    ColorRole m_fill;
};

}  // namespace tralio
