#pragma once

#include <QWidget>

namespace tralio {

/// Every part in every state, without layouts, where the drawn components stand.
[[nodiscard]] QWidget* componentsPage();

/// A panel in its window, built of the parts.
[[nodiscard]] QWidget* panelPage();

}  // namespace tralio
