#include "platform/linux/tray/status_notifier_item.h"

#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>

#include "support/event_loop.h"
#include "support/private_bus.h"
#include "support/testing.h"

namespace tralio {
namespace {

const auto watcher = u"org.kde.StatusNotifierWatcher"_s;
const auto watcherPath = u"/StatusNotifierWatcher"_s;

/// A tray that answers when the test does so for it.
class SlowTray final : public QDBusVirtualObject {
public:
    explicit SlowTray(QDBusConnection bus) : m_bus(std::move(bus)) {
        m_bus.registerVirtualObject(watcherPath, this);
        m_bus.registerService(watcher);
    }

    QString introspect(const QString& /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& /*connection*/) override {
        if (message.member() == u"Get")
            questions += message;
        return true;
    }

    void answer(const QDBusMessage& question, bool present) {
        m_bus.send(question.createReply(QVariant::fromValue(QDBusVariant(present))));
    }
    void announceHost() {
        m_bus.send(QDBusMessage::createSignal(watcherPath, watcher, u"StatusNotifierHostRegistered"_s));
    }
    void click(const QString& item) {
        auto activate = QDBusMessage::createMethodCall(
            item, u"/StatusNotifierItem"_s, u"org.kde.StatusNotifierItem"_s, u"Activate"_s);
        activate << 1 << 2;
        m_bus.send(activate);
    }

    QList<QDBusMessage> questions;

private:
    QDBusConnection m_bus;
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
