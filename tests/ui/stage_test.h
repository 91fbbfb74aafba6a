#pragma once

#include "ui/kit/theme.h"
#include "ui/stage.h"

namespace tralio {

/// The whole window without motions, in the hands of a user.
class StageTest : public testing::Test, protected Stage {
protected:
    StageTest() { Theme::setAppearance({.reducedMotion = true}); }
    ~StageTest() override { Theme::setAppearance({}); }

    [[nodiscard]] bool isOnTab(const QString& tab) const {
        const auto found = controls(tab);
        return !found.isEmpty() && found.constFirst()->isChecked();
    }
    /// What is to be set before the window opens.
    void refusePermissions() {
        desktop.permissions.accessibility = false;
        desktop.permissions.screenCapture = false;
        desktop.permissions.grantOnRequest = true;
    }
    /// Gives a control the keyboard, with its ring, which shows only to who uses the keyboard.
    void focus(const QString& name) {
        ASSERT_TRUE(hasControl(name)) << qPrintable(name);
        press(Qt::Key_Shift);
        controls(name).constFirst()->setFocus(Qt::TabFocusReason);
    }
    [[nodiscard]] QString setting(const QString& name) const {
        return store.text(QStringLiteral("app_setting_") + name).value_or(QString());
    }
};

}  // namespace tralio
