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

TEST_F(WalkThrough, it_stays_within_its_pages_and_whoever_is_told_of_its_end_may_take_it_away) {
    begin();
    state->back();
    EXPECT_TRUE(state->isFirstStep());
    for (int step = 0; step < OnboardingState::totalSteps; ++step)
        state->next();
    EXPECT_TRUE(state->isLastStep());
    state->finish();
    EXPECT_EQ(finishes, 1);
}

}  // namespace
}  // namespace tralio
