#pragma once

#include <QWidget>

#include "ui/kit/colors.h"
#include "ui/kit/icon.h"

namespace tralio {

/// An icon that is only decoration. Screen readers skip it, since the text beside it says the same.
class IconView final : public QWidget {
    Q_OBJECT

public:
    IconView(const Icon& icon, ColorRole role, QWidget* parent = nullptr);

    void setIcon(const Icon& icon);
    void setColor(ColorRole role);
    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Icon m_icon;
    ColorRole m_role;
};

}  // namespace tralio
