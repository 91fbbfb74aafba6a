#pragma once

#include "ui/kit/theme.h"
#include "ui/stage.h"

namespace tralio {

/// The whole window, in the hands of a user.
class MainWindow : public testing::Test {
protected:
    MainWindow() { Theme::setAppearance({.reducedMotion = true}); }
    ~MainWindow() override { Theme::setAppearance({}); }

    [[nodiscard]] bool shows(const QString& name) const { return stage.hasControl(name); }
    [[nodiscard]] bool isOnTab(const QString& tab) const {
        const auto found = stage.controls(tab);
        return !found.isEmpty() && found.constFirst()->isChecked();
    }

    Stage stage;
};

}  // namespace tralio
