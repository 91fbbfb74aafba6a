#pragma once

#include <QWidget>

namespace tralio {

class Label;
class PermissionStep;

// The pages of the walk-through, each as wide as its room and centred in it from top to bottom. They come to
// belong to the layout that they are put into.

[[nodiscard]] QWidget* step1Welcome();
/// The cards are made by whoever knows the permissions.
[[nodiscard]] QWidget* step2Permissions(PermissionStep* accessibility, PermissionStep* screenCapture);
[[nodiscard]] QWidget* step3AIModel();
/// The line of this machine's shortcuts is whoever knows them to fill.
[[nodiscard]] QWidget* step4Shortcuts(Label* shortcutsOfThisMachine);

}  // namespace tralio
