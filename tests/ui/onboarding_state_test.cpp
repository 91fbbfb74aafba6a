#include "ui/onboarding/onboarding_state.h"

#include <gmock/gmock.h>
#include <memory>

#include "support/fake_desktop.h"

namespace tralio {
namespace {

TEST(WalkThrough, stays_within_its_pages_and_may_be_taken_away_by_whoever_is_told_of_its_end) {
    FakeDesktop desktop;
    HotKeyService hotKeys{desktop.platform()};
    std::unique_ptr<OnboardingState> state;
    state = std::make_unique<OnboardingState>(hotKeys, desktop.clock, [&state] { state.reset(); });
    state->back();
    EXPECT_TRUE(state->isFirstStep());
    for (int step = 0; step < OnboardingState::totalSteps; ++step)
        state->next();
    EXPECT_TRUE(state->isLastStep());
    state->finish();
    EXPECT_EQ(state, nullptr);
    EXPECT_EQ(desktop.clock.pending(), 0) << "the permissions are still looked up";
}

}  // namespace
}  // namespace tralio
