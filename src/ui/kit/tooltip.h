#pragma once

#include <QString>

class QWidget;

namespace tralio {

/// Gives a widget a tooltip in the program's style, shown when the pointer has been over it for 600 ms. The
/// text is also the accessible description, and the accessible name if there is none.
void setTooltip(QWidget* widget, const QString& text);

}  // namespace tralio
