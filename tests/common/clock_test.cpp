#include "common/clock.h"

#include <QTest>

#include "support/testing.h"

namespace tralio {
namespace {

TEST(SystemClockTest, a_call_comes_on_a_later_turn_unless_its_context_is_deleted) {
    SystemClock clock;
    QObject witness;
    auto context = std::make_unique<QObject>();
    int taken = 0;
    int ticks = 0;
    int zeroDelays = 0;
    clock.after(
        1ms, context.get(), [&] { ++taken; });
    clock.every(
        1ms, context.get(), [&] { ++taken; });
    clock.every(
        1ms, &witness, [&] { ++ticks; });
    clock.after(0ms, &witness, [&] { ++zeroDelays; });
    EXPECT_EQ(zeroDelays, 0);
    context.reset();
    EXPECT_TRUE(QTest::qWaitFor([&] { return ticks == 3; }));
    EXPECT_EQ(zeroDelays, 1);
    EXPECT_EQ(taken, 0);
}

}  // namespace
}  // namespace tralio
