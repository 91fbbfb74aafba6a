#include "ui/main/main_state.h"

#include <QSignalSpy>

#include "hotkeys/permission_watch.h"
#include "ui/program_on_fakes.h"

namespace tralio {
namespace {

class MainPanel : public testing::Test, protected ProgramOnFakes {
protected:
    void show() {
        state.reset();
        permissions = std::make_unique<PermissionWatch>(hotKeys, desktop.clock);
        state = std::make_unique<MainState>(MainState::Dependencies{store, appState, *permissions, updates});
    }

    std::unique_ptr<PermissionWatch> permissions;
    std::unique_ptr<MainState> state;
};

TEST_F(MainPanel, the_permissions_are_known_at_once_and_their_changes_announced_within_a_second) {
    desktop.permissions.screenCapture = true;
    show();
    EXPECT_FALSE(state->isAccessibilityGranted());
    EXPECT_TRUE(state->isScreenCaptureGranted());

    const QSignalSpy changes(state.get(), &ObservableObject::objectWillChange);
    desktop.permissions.accessibility = true;
    desktop.clock.advance(999ms);
    EXPECT_FALSE(state->isAccessibilityGranted());
    desktop.clock.advance(1ms);
    EXPECT_TRUE(state->isAccessibilityGranted());
    desktop.permissions.screenCapture = false;
    desktop.clock.advance(5s);
    EXPECT_FALSE(state->isScreenCaptureGranted());
    EXPECT_EQ(changes.size(), 2);
}

TEST_F(MainPanel, the_warning_names_what_is_missing_and_nothing_else) {
    for (const auto& [accessibility, screenCapture] :
        {std::pair(false, false), std::pair(false, true), std::pair(true, false), std::pair(true, true)}) {
        desktop.permissions.accessibility = accessibility;
        desktop.permissions.screenCapture = screenCapture;
        show();
        const auto warning = state->ungrantedWarningText();
        EXPECT_EQ(warning.has_value(), !accessibility || !screenCapture);
        EXPECT_EQ(warning.value_or(QString()).contains(u"Trợ năng"_s), !accessibility);
        EXPECT_EQ(warning.value_or(QString()).contains(u"Chụp"_s), !screenCapture);
    }
}

TEST_F(MainPanel, every_opening_brings_the_translate_tab_and_fresh_permissions) {
    show();
    for (const bool granted : {true, false}) {
        state->selectedTab = AppTab::settings;
        desktop.permissions.accessibility = granted;
        appState.notifyPopoverOpened();
        ASSERT_TRUE(nextTurn());
        EXPECT_EQ(state->selectedTab(), AppTab::translate);
        EXPECT_EQ(state->isAccessibilityGranted(), granted);
    }
}

TEST_F(MainPanel, every_request_brings_the_translate_tab_and_other_signals_leave_the_tab_alone) {
    show();
    for (int i = 0; i < 2; ++i) {
        state->selectedTab = AppTab::history;
        appState.requestTranslation(u"the same text"_s);
        ASSERT_TRUE(nextTurn());
        EXPECT_EQ(state->selectedTab(), AppTab::translate);
    }

    state->selectedTab = AppTab::author;
    appState.requestTranslation(u" \t"_s);
    appState.pendingTextToTranslate = QString();
    appState.showOnboarding = true;
    ASSERT_TRUE(nextTurn());
    EXPECT_EQ(state->selectedTab(), AppTab::author);
}

TEST_F(MainPanel, nothing_happens_after_the_view_is_gone) {
    show();
    appState.notifyPopoverOpened();
    state.reset();
    permissions.reset();
    appState.requestTranslation(u"text"_s);
    ASSERT_TRUE(nextTurn());
    desktop.clock.advance(2s);
    EXPECT_EQ(desktop.clock.pending(), 0);
}

}  // namespace
}  // namespace tralio
