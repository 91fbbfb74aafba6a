#include "platform/linux/tray/status_notifier_item.h"

#include "platform/scripted_bus_object.h"
#include "support/event_loop.h"
#include "support/private_bus.h"
#include "support/testing.h"

namespace tralio {
namespace {

const auto watcher = u"org.kde.StatusNotifierWatcher"_s;
const auto watcherPath = u"/StatusNotifierWatcher"_s;

/// A tray that answers when the test does so for it.
class SlowTray final : public ScriptedBusObject {
public:
    explicit SlowTray(QDBusConnection bus) : ScriptedBusObject(std::move(bus), watcher, watcherPath) {}

    void answer(const QDBusMessage& question, bool present) { send(question.createReply(variant(present))); }
    void announceHost() { signal(watcherPath, watcher, u"StatusNotifierHostRegistered"_s, {}); }
    void click(const QString& item) {
        auto activate = QDBusMessage::createMethodCall(
            item, u"/StatusNotifierItem"_s, u"org.kde.StatusNotifierItem"_s, u"Activate"_s);
        activate << 1 << 2;
        send(activate);
    }

    QList<QDBusMessage> questions;

private:
    void take(const QDBusMessage& call) override {
        if (call.member() == u"Get")
            questions += call;
    }
};

TEST(StatusNotifierItem, a_late_answer_to_an_earlier_question_changes_nothing) {
    PrivateBus bus;
    SlowTray tray(bus.connect());
    const QDBusConnection own = bus.connect();
    StatusNotifierItem item(u"Tralio"_s, QIcon(), own);
    std::optional<bool> present;
    bool clicked = false;
    QObject::connect(
        &item, &StatusNotifierItem::trayChanged, &item, [&](bool there) { present = there; });
    QObject::connect(
        &item, &StatusNotifierItem::activated, &item, [&] { clicked = true; });

    ASSERT_TRUE(eventually([&] { return tray.questions.size() == 1; }));
    tray.announceHost();
    ASSERT_TRUE(eventually([&] { return tray.questions.size() == 2; }));
    tray.answer(tray.questions.last(), true);
    ASSERT_TRUE(eventually([&] { return present == true; }));
    tray.answer(tray.questions.first(), false);
    tray.click(own.baseService());
    ASSERT_TRUE(eventually([&] { return clicked; }));
    EXPECT_EQ(present, true);
}

}  // namespace
}  // namespace tralio
