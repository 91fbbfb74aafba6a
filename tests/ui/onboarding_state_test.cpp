#include "ui/onboarding/onboarding_state.h"

#include <gmock/gmock.h>
#include <memory>

#include "support/fake_desktop.h"

namespace tralio {
namespace {

using namespace std::chrono_literals;

class WalkThrough : public testing::Test {
protected:
    void begin() {
        state = std::make_unique<OnboardingState>(hotKeys, desktop.clock, [this] {
            ++finishes;
            state.reset();
        });
    }

    FakeDesktop desktop;
    HotKeyService hotKeys{desktop.platform()};
    std::unique_ptr<OnboardingState> state;
    int finishes = 0;
};

TEST_F(WalkThrough, the_permissions_are_known_at_once_and_looked_up_every_second_until_it_ends) {
    desktop.permissions.accessibility = true;
    begin();
    EXPECT_TRUE(state->isAccessibilityGranted());
    EXPECT_FALSE(state->isScreenCaptureGranted());

    desktop.permissions.accessibility = false;
    desktop.permissions.screenCapture = true;
    desktop.clock.advance(999ms);
    EXPECT_FALSE(state->isScreenCaptureGranted());
    desktop.clock.advance(1ms);
    EXPECT_FALSE(state->isAccessibilityGranted());
    EXPECT_TRUE(state->isScreenCaptureGranted());

    state.reset();
    EXPECT_EQ(desktop.clock.pending(), 0);
}

TEST_F(WalkThrough, ending_it_is_told_once_and_may_take_it_away_and_the_next_one_begins_at_the_first_page) {
    begin();
    state->next();
    state->next();
    state->back();
    EXPECT_EQ(state->currentStep(), 1);
    state->finish();
    EXPECT_EQ(finishes, 1);
    begin();
    EXPECT_TRUE(state->isFirstStep());
}

TEST_F(WalkThrough, the_desktop_is_asked_for_a_permission_and_its_settings_open_when_it_does_not_grant) {
    begin();
    state->requestAccessibility();
    state->requestScreenCapture();
    EXPECT_EQ(desktop.workspace.opened.size(), 2U);
    EXPECT_FALSE(desktop.permissions.accessibility);

    desktop.permissions.grantOnRequest = true;
    state->requestAccessibility();
    state->requestScreenCapture();
    EXPECT_EQ(desktop.workspace.opened.size(), 2U);
    EXPECT_TRUE(desktop.permissions.accessibility);
    EXPECT_TRUE(desktop.permissions.screenCapture);
}

}  // namespace
}  // namespace tralio
