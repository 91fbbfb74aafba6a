#pragma once

#include <QWidget>

namespace tralio {

class Label;
class PermissionStep;

// The pages of the walk-through, each as wide as its room and vertically centred in it. The layout that a
// page is put into owns it.

[[nodiscard]] QWidget* step1Welcome();
/// The caller makes the cards, since it knows the permissions.
[[nodiscard]] QWidget* step2Permissions(PermissionStep* accessibility, PermissionStep* screenCapture);
[[nodiscard]] QWidget* step3AIModel();
/// The caller fills the label with the shortcuts in use.
[[nodiscard]] QWidget* step4Shortcuts(Label* shortcutsOfThisMachine);

}  // namespace tralio
