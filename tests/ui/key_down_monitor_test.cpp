#include "ui/settings/key_down_monitor.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QWidget>

#include <gtest/gtest.h>

namespace tralio {
namespace {

constexpr quint32 escapePosition = 9;
constexpr quint32 otherPosition = 38;

/// Counts the keys that reach it.
class Target final : public QWidget {
public:
    void send(QEvent::Type type, quint64 time, quint32 position = escapePosition, bool repeats = false) {
        QKeyEvent event(type, position == escapePosition ? Qt::Key_Escape : Qt::Key_A, Qt::NoModifier,
            position, 0, 0, {}, repeats);
        event.setTimestamp(time);
        QCoreApplication::sendEvent(this, &event);
    }

    int presses = 0;

protected:
    void keyPressEvent(QKeyEvent* /*event*/) override { ++presses; }
};

TEST(KeyDownMonitorTest, what_a_swallowed_key_repeats_reaches_nobody_until_it_is_pressed_anew) {
    using enum QEvent::Type;
    Target target;
    auto monitor = std::make_unique<KeyDownMonitor>(
        [](quint32) { return KeyCode::escape; }, [](const KeyCombination&) { return true; });
    target.send(KeyPress, 100);
    target.send(KeyRelease, 300);
    monitor.reset();
    target.send(KeyPress, 300);  // a repeat that the toolkit takes for a hand's press
    target.send(KeyPress, 320, otherPosition);
    EXPECT_EQ(target.presses, 1) << "another key is another key";
    for (quint64 time = 350; time < 500; time += 50) {
        target.send(KeyRelease, time);
        target.send(KeyPress, time, escapePosition, time == 400);
    }
    EXPECT_EQ(target.presses, 1);
    target.send(KeyRelease, 500);
    target.send(KeyPress, 700);
    EXPECT_EQ(target.presses, 2) << "pressed anew";
    target.send(KeyRelease, 800);
    target.send(KeyPress, 800);
    EXPECT_EQ(target.presses, 3) << "it swallows no more";
}

}  // namespace
}  // namespace tralio
