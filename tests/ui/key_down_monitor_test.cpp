#include "ui/settings/key_down_monitor.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QSignalSpy>
#include <QWidget>

#include <memory>

#include "support/testing.h"
#include "ui/kit/button.h"
#include "ui/kit/keyboard_use.h"

namespace tralio {
namespace {

constexpr quint32 escapePosition = 9;
constexpr quint32 otherPosition = 38;

/// Sends a key as the toolkit does: the window has the server's time, the widget a copy without.
void sendKey(QWidget& widget, const QKeyEvent& event, quint64 time) {
    QWidget window;
    const std::unique_ptr<QKeyEvent> timed(event.clone());
    const std::unique_ptr<QKeyEvent> copy(event.clone());
    timed->setTimestamp(time);
    QCoreApplication::sendEvent(&window, timed.get());
    if (!timed->isAccepted())
        QCoreApplication::sendEvent(&widget, copy.get());
}

/// Counts the keys that reach it.
class Target final : public QWidget {
public:
    void send(QEvent::Type type, quint64 time, quint32 position = escapePosition, bool repeats = false) {
        const int key = position == escapePosition ? Qt::Key_Escape : Qt::Key_A;
        sendKey(*this, QKeyEvent(type, key, Qt::NoModifier, position, 0, 0, {}, repeats), time);
    }

    int presses = 0;

protected:
    void keyPressEvent(QKeyEvent* /*event*/) override { ++presses; }
};

TEST(KeyDownMonitorTest, what_a_swallowed_key_repeats_reaches_nobody_until_it_is_pressed_anew) {
    using enum QEvent::Type;
    watchKeyboardUse();
    Target target;
    const auto swallow = [] {
        return std::make_unique<KeyDownMonitor>(
            [](quint32) { return KeyCode::escape; }, [](const KeyCombination&) { return true; });
    };
    auto monitor = swallow();
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

    monitor = swallow();
    target.send(KeyPress, 900);
    target.send(KeyRelease, 1000);
    monitor.reset();
    target.send(KeyPress, 1200);
    EXPECT_EQ(target.presses, 4) << "released before the end";
}

TEST(KeyDownMonitorTest, a_control_is_pressed_once_by_a_key_that_is_held) {
    using enum QEvent::Type;
    for (const int key : {Qt::Key_Return, Qt::Key_Space}) {
        Button button(button::bordered, {.title = QStringLiteral("x")});
        const QSignalSpy clicks(&button, &Button::clicked);
        const auto send = [&](QEvent::Type type, quint64 time) {
            sendKey(button, QKeyEvent(type, key, Qt::NoModifier, otherPosition, 0, 0), time);
        };
        send(KeyPress, 1000);
        for (const quint64 time : {1300, 1350, 1400}) {
            send(KeyRelease, time);
            send(KeyPress, time);
        }
        send(KeyRelease, 1500);
        EXPECT_EQ(clicks.count(), 1);
        send(KeyPress, 1600);
        send(KeyRelease, 1700);
        EXPECT_EQ(clicks.count(), 2);
    }
}

}  // namespace
}  // namespace tralio
