#include "ui/onboarding/onboarding_state.h"

#include <gmock/gmock.h>
#include <memory>

#include "hotkeys/permission_watch.h"
#include "state/app_settings.h"
#include "support/fake_desktop.h"
#include "support/memory_key_value_store.h"

namespace tralio {
namespace {

TEST(WalkThrough, stays_within_its_pages_and_may_be_taken_away_by_whoever_is_told_of_its_end) {
    FakeDesktop desktop;
    HotKeyService hotKeys{desktop.platform()};
    PermissionWatch permissions{hotKeys, desktop.clock};
    MemoryKeyValueStore store;
    AppSettings settings{store, hotKeys};
    std::unique_ptr<OnboardingState> state;
    state = std::make_unique<OnboardingState>(
        OnboardingState::Dependencies{hotKeys, permissions, settings}, [&state] { state.reset(); });
    state->back();
    EXPECT_TRUE(state->isFirstStep());
    for (int step = 0; step < OnboardingState::totalSteps; ++step)
        state->next();
    EXPECT_TRUE(state->isLastStep());
    state->finish();
    EXPECT_EQ(state, nullptr);
}

}  // namespace
}  // namespace tralio
