#pragma once

#include <QString>

class QWidget;

namespace tralio {

/// Gives a widget a tooltip in the program's own look, 600 ms after the pointer came to it. The text is also
/// the widget's accessible description, and its name where it has none.
void setTooltip(QWidget* widget, const QString& text);

}  // namespace tralio
