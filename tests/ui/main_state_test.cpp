#include "ui/main/main_state.h"

#include <QSignalSpy>

#include <gmock/gmock.h>

#include "engine/in_process_http_client.h"
#include "history/translation_item.h"
#include "state/app_state.h"
#include "support/event_loop.h"
#include "support/fake_desktop.h"
#include "support/memory_key_value_store.h"
#include "support/print_to.h"
#include "update/update_service.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class MainPanel : public testing::Test {
protected:
    void show() {
        state = std::make_unique<MainState>(
            MainState::Services{store, appState, hotKeys, updates, desktop.clock});
    }

    FakeDesktop desktop;
    MemoryKeyValueStore store;
    InProcessHttpClient http{desktop.clock};
    UpdateService updates{http, {}};
    HotKeyService hotKeys{desktop.platform()};
    AppState appState;
    std::unique_ptr<MainState> state;
};

TEST_F(MainPanel, the_permissions_are_known_at_once_and_looked_up_every_second) {
    desktop.permissions.screenCapture = true;
    show();
    EXPECT_FALSE(state->isAccessibilityGranted());
    EXPECT_TRUE(state->isScreenCaptureGranted());

    desktop.permissions.accessibility = true;
    desktop.clock.advance(999ms);
    EXPECT_FALSE(state->isAccessibilityGranted());
    desktop.clock.advance(1ms);
    EXPECT_TRUE(state->isAccessibilityGranted());

    desktop.permissions.screenCapture = false;
    desktop.clock.advance(1s);
    EXPECT_FALSE(state->isScreenCaptureGranted());
}

TEST_F(MainPanel, only_a_permission_that_has_changed_is_announced) {
    show();
    const QSignalSpy changes(state.get(), &ObservableObject::objectWillChange);
    desktop.clock.advance(5s);
    EXPECT_EQ(changes.size(), 0);
    desktop.permissions.screenCapture = true;
    desktop.clock.advance(5s);
    EXPECT_EQ(changes.size(), 1);
}

TEST_F(MainPanel, the_warning_names_what_is_missing_and_nothing_else) {
    struct Case {
        bool accessibility;
        bool screenCapture;
    };
    const QString accessibility = u"Trợ năng"_s;
    const QString screenCapture = u"Chụp"_s;
    for (const Case& granted : {Case{false, false}, Case{false, true}, Case{true, false}, Case{true, true}}) {
        desktop.permissions.accessibility = granted.accessibility;
        desktop.permissions.screenCapture = granted.screenCapture;
        show();
        const auto warning = state->ungrantedWarningText();
        EXPECT_EQ(warning.has_value(), !granted.accessibility || !granted.screenCapture);
        EXPECT_EQ(warning.value_or(QString()).contains(accessibility), !granted.accessibility);
        EXPECT_EQ(warning.value_or(QString()).contains(screenCapture), !granted.screenCapture);
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

TEST_F(MainPanel, the_walk_through_is_shown_until_it_is_completed_once_and_again_on_demand) {
    show();
    EXPECT_TRUE(state->isOnboardingShown());
    state->finishOnboarding();
    EXPECT_FALSE(state->isOnboardingShown());

    show();
    EXPECT_FALSE(state->isOnboardingShown()) << "forgotten by the next start";
    appState.showOnboarding = true;
    EXPECT_TRUE(state->isOnboardingShown());
    state->finishOnboarding();
    EXPECT_FALSE(state->isOnboardingShown());
}

TEST_F(MainPanel, a_picked_entry_of_the_history_fills_the_input_and_requests_nothing) {
    show();
    state->selectedTab = AppTab::history;
    TranslationItem item;
    item.sourceText = u"picked"_s;
    state->select(item);
    EXPECT_EQ(state->textToTranslate(), u"picked"_s);
    EXPECT_EQ(state->selectedTab(), AppTab::translate);
    EXPECT_EQ(appState.translateTriggerId(), std::nullopt);
}

TEST_F(MainPanel, nothing_happens_after_the_view_is_gone) {
    show();
    appState.notifyPopoverOpened();
    state.reset();
    appState.requestTranslation(u"text"_s);
    ASSERT_TRUE(nextTurn());
    desktop.clock.advance(2s);
    EXPECT_EQ(desktop.clock.pending(), 0);
}

TEST(AppTabs, are_numbered_from_zero_to_three) {
    EXPECT_EQ(appTab(0), AppTab::translate);
    EXPECT_EQ(appTab(1), AppTab::history);
    EXPECT_EQ(appTab(2), AppTab::settings);
    EXPECT_EQ(appTab(3), AppTab::author);
    EXPECT_EQ(appTab(4), std::nullopt);
    EXPECT_EQ(appTab(-1), std::nullopt);
}

}  // namespace
}  // namespace tralio
