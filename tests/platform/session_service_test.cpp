#include "platform/linux/bus/session_service.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>

#include <future>

#include "common/text_limit.h"
#include "support/event_loop.h"
#include "support/private_bus.h"
#include "support/testing.h"

namespace tralio {
namespace {

class Session : public testing::Test {
protected:
    void SetUp() override {
        service.setActions({[this] { happened += u"open"_s + qEnvironmentVariable("XDG_ACTIVATION_TOKEN"); },
            [this] { happened += u"selection"_s; }, [this] { happened += u"capture"_s; },
            [this](const QString& text) { happened += u"text:"_s + text; }});
        ASSERT_EQ(service.claim(), SessionService::Claim::claimed);
    }
    void TearDown() override { qunsetenv("XDG_ACTIVATION_TOKEN"); }

    void call(const QString& interface, const QString& method, const QVariantList& arguments) {
        auto message = QDBusMessage::createMethodCall(
            QLatin1String(SessionService::name), QLatin1String(SessionService::path), interface, method);
        message.setArguments(arguments);
        caller.send(message);
    }

    PrivateBus bus;
    QDBusConnection caller = bus.connect();
    SessionService service{bus.connect()};
    QStringList happened;
};

TEST_F(Session, anybody_on_the_bus_can_ask_for_each_action_by_either_interface) {
    const QString own = u"org.tralio.Tralio"_s;
    const QString standard = u"org.freedesktop.Application"_s;
    const QString text = u"Ấy  là\nhai dòng"_s;
    const QVariantMap noData;
    call(own, u"TranslateSelection"_s, {});
    call(own, u"CaptureScreen"_s, {});
    call(own, u"Open"_s, {});
    call(own, u"TranslateText"_s, {text});
    call(standard, u"ActivateAction"_s, {u"translate-selection"_s, QVariantList(), noData});
    call(standard, u"ActivateAction"_s, {u"no-such-action"_s, QVariantList(), noData});
    call(standard, u"ActivateAction"_s, {u"translate-text"_s, QVariantList{text}, noData});
    call(standard, u"ActivateAction"_s, {u"capture-screen"_s, QVariantList(), noData});
    ASSERT_TRUE(eventually([&] { return happened.size() == 7; }));
    EXPECT_THAT(happened,
        ElementsAre(u"selection"_s, u"capture"_s, u"open"_s, u"text:"_s + text, u"selection"_s,
            u"text:"_s + text, u"capture"_s));
}

TEST_F(Session, of_a_text_that_is_too_long_only_the_beginning_is_handed_on) {
    const QString text(3 * longestText, u'a');
    call(u"org.tralio.Tralio"_s, u"TranslateText"_s, {text});
    call(u"org.freedesktop.Application"_s, u"ActivateAction"_s,
        {u"translate-text"_s, QVariantList{text}, QVariantMap()});
    ASSERT_TRUE(eventually([&] { return happened.size() == 2; }));
    for (const QString& taken : happened)
        EXPECT_EQ(taken.size(), u"text:"_s.size() + longestText + 1);
}

TEST_F(Session, a_second_instance_has_the_first_open_with_the_token_that_the_second_was_given) {
    SessionService second(bus.connect());
    ASSERT_EQ(second.claim(), SessionService::Claim::takenByAnother);
    qputenv("XDG_ACTIVATION_TOKEN", "of-the-second");
    auto opened = std::async([&] { return second.openRunningInstance(); });
    ASSERT_TRUE(eventually([&] { return !happened.isEmpty(); }));
    EXPECT_TRUE(opened.get());
    EXPECT_THAT(happened, ElementsAre(u"openof-the-second"_s));
}

TEST_F(Session, a_hung_first_instance_is_not_waited_for_long) {
    SessionService second(bus.connect());
    ASSERT_EQ(second.claim(), SessionService::Claim::takenByAnother);
    EXPECT_FALSE(second.openRunningInstance());  // this thread, which would answer, is the one that waits
}

TEST(SessionOnALaterBus, has_the_name_again_when_the_bus_was_started_anew) {
    auto bus = std::make_unique<PrivateBus>();
    std::unique_ptr<PrivateBus> next;
    SessionService service(
        bus->connect(), [&] { return next ? next->connect() : QDBusConnection(u"nowhere"_s); });
    ASSERT_EQ(service.claim(), SessionService::Claim::claimed);
    bus.reset();
    next = std::make_unique<PrivateBus>();
    const QDBusConnection caller = next->connect();
    EXPECT_TRUE(eventually([&] {
        return caller.interface()->isServiceRegistered(QLatin1String(SessionService::name)).value();
    }));
}

TEST(SessionWithoutBus, is_told_apart_from_a_taken_name) {
    SessionService service(QDBusConnection(u"nowhere"_s));
    EXPECT_EQ(service.claim(), SessionService::Claim::noSessionBus);
}

}  // namespace
}  // namespace tralio
