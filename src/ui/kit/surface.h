#pragma once

#include <QWidget>

#include "ui/kit/colors.h"

namespace tralio {

/// A rounded rectangle behind other widgets.
class Surface final : public QWidget {
    Q_OBJECT

public:
    Surface(ColorRole fill, ColorRole edge, int radius, QWidget* parent = nullptr);

    void setFill(ColorRole fill);
    /// The border is drawn inside the edge, `width` logical pixels wide; `ColorRole::none` removes it.
    void setEdge(ColorRole edge, int width = 1);
    /// Fills the background of `head`, a part at the top of the surface and as wide, with another colour.
    void setHead(QWidget* head, ColorRole fill);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    ColorRole m_fill;
    ColorRole m_edge;
    int m_edgeWidth = 1;
    int m_radius;
    QWidget* m_head = nullptr;
    ColorRole m_headFill = ColorRole::none;
};

/// A faint line of one pixel across the full width.
class Divider final : public QWidget {
    Q_OBJECT

public:
    explicit Divider(QWidget* parent = nullptr, ColorRole role = ColorRole::divider);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    ColorRole m_role;
};

}  // namespace tralio
