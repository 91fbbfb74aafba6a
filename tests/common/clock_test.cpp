#include "common/clock.h"

#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include "support/fake_clock.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

TEST(SystemClockTest, a_delay_of_zero_means_the_next_turn_of_the_event_loop) {
    SystemClock clock;
    QObject context;
    int calls = 0;
    clock.after(0ms, &context, [&] { ++calls; });
    EXPECT_EQ(calls, 0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return calls == 1; }));
}

TEST(SystemClockTest, calls_come_in_the_order_of_their_delays) {
    SystemClock clock;
    QObject context;
    QStringList calls;
    clock.after(20ms, &context, [&] { calls += u"later"_s; });
    clock.after(1ms, &context, [&] { calls += u"sooner"_s; });
    EXPECT_TRUE(QTest::qWaitFor([&] { return calls.size() == 2; }));
    EXPECT_EQ(calls, QStringList({u"sooner"_s, u"later"_s}));
}

TEST(SystemClockTest, deleting_the_context_takes_its_calls_back) {
    SystemClock clock;
    QObject witness;
    auto context = std::make_unique<QObject>();
    int taken = 0;
    int ticks = 0;
    clock.after(1ms, context.get(), [&] { ++taken; });
    clock.every(1ms, context.get(), [&] { ++taken; });
    clock.every(1ms, &witness, [&] { ++ticks; });
    context.reset();
    EXPECT_TRUE(QTest::qWaitFor([&] { return ticks == 3; }));
    EXPECT_EQ(taken, 0);
}

// Other tests rest on the fake clock being as honest as the real one.
TEST(FakeClockTest, time_moves_from_call_to_call) {
    FakeClock clock;
    QObject context;
    auto other = std::make_unique<QObject>();
    QStringList calls;
    clock.every(30ms, &context, [&] { calls += u"tick"_s; });
    clock.after(45ms, &context, [&] {
        calls += u"once"_s;
        clock.after(10ms, &context, [&] { calls += u"from a call"_s; });
        other.reset();
    });
    clock.after(50ms, other.get(), [&] { calls += u"taken back"_s; });
    clock.advance(29ms);
    EXPECT_TRUE(calls.isEmpty());
    clock.advance(31ms);
    EXPECT_EQ(calls, QStringList({u"tick"_s, u"once"_s, u"from a call"_s, u"tick"_s}));
    EXPECT_EQ(clock.pending(), 1);
}

}  // namespace
}  // namespace tralio
