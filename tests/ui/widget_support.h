#pragma once

#include <QImage>
#include <QWidget>

namespace tralio {

/// Shows a widget in an active window, as the user would have it.
void showActive(QWidget& widget);

/// What the widget paints, at its size.
[[nodiscard]] QImage pictureOf(QWidget& widget);

/// The smallest rectangle in which two pictures of one size differ.
[[nodiscard]] QRect difference(const QImage& one, const QImage& other);

}  // namespace tralio
