#include "platform/linux/process/end_signals.h"

#include <csignal>

#include "support/testing.h"

namespace tralio {
namespace {

sighandler_t handlerOf(int number) {
    struct sigaction action {};
    sigaction(number, nullptr, &action);
    return action.sa_handler;
}

TEST(EndSignals, each_ends_the_program_in_order_once_and_what_nohup_ignores_stays_ignored) {
    std::signal(SIGHUP, SIG_IGN);
    int ends = 0;
    std::optional<EndSignals> signals(std::in_place, [&] { ++ends; });
    EXPECT_EQ(handlerOf(SIGHUP), SIG_IGN);
    for (const int number : {SIGTERM, SIGINT}) {
        const int before = ends;
        raise(number);
        EXPECT_TRUE(eventually([&] { return ends > before; }));
        EXPECT_EQ(handlerOf(number), SIG_DFL) << "the next one ends what hangs";
    }
    EXPECT_EQ(ends, 2);

    signals.emplace([&] { ++ends; });
    EXPECT_NE(handlerOf(SIGTERM), SIG_DFL);
    signals.reset();
    EXPECT_EQ(handlerOf(SIGTERM), SIG_DFL);
    std::signal(SIGHUP, SIG_DFL);
}

}  // namespace
}  // namespace tralio
