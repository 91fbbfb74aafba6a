#include "platform/linux/bus/session_service.h"

#include <future>

#include "common/text_limit.h"
#include "support/private_bus.h"
#include "support/testing.h"

namespace tralio {
namespace {

using Claim = SessionService::Claim;

struct Session : testing::Test {
    void SetUp() override {
        service.setActions({[this] { happened += u"open"_s + qEnvironmentVariable("XDG_ACTIVATION_TOKEN"); },
            [this] { happened += u"selection"_s; }, [this] { happened += u"capture"_s; },
            [this](const QString& text) { happened += u"text:"_s + text; }});
        ASSERT_EQ(service.claim(), Claim::claimed);
    }
    void TearDown() override { qunsetenv("XDG_ACTIVATION_TOKEN"); }

    void act(const QString& action, const QVariantList& arguments = {}) {
        auto message = QDBusMessage::createMethodCall(QLatin1String(SessionService::name),
            QLatin1String(SessionService::path), u"org.freedesktop.Application"_s, u"ActivateAction"_s);
        message.setArguments({action, QVariant(arguments), QVariantMap()});
        caller.send(message);
    }

    PrivateBus bus;
    QDBusConnection caller = bus.connect();
    SessionService service{bus.connect()};
    QStringList happened;
};

TEST_F(Session, anybody_on_the_bus_can_ask_for_each_action_by_the_standard_interface) {
    const QString text = u"Ấy  là\nhai dòng"_s;
    act(u"translate-selection"_s);
    act(u"no-such-action"_s);
    act(u"translate-text"_s, {text});
    act(u"capture-screen"_s);
    act(u"translate-text"_s, {QString(3 * longestText, u'a')});
    ASSERT_TRUE(eventually([&] { return happened.size() == 4; }));
    EXPECT_EQ(happened.takeLast().size(), u"text:"_s.size() + longestText + 1)
        << "the beginning is handed on";
    EXPECT_THAT(happened, ElementsAre(u"selection"_s, u"text:"_s + text, u"capture"_s));
}

TEST_F(Session, a_second_instance_has_the_first_open_with_its_token_and_does_not_wait_long_for_a_hung_one) {
    SessionService second(bus.connect());
    ASSERT_EQ(second.claim(), Claim::takenByAnother);
    qputenv("XDG_ACTIVATION_TOKEN", "of-the-second");
    auto opened = std::async([&] { return second.openRunningInstance(); });
    ASSERT_TRUE(eventually([&] { return !happened.isEmpty(); }));
    EXPECT_TRUE(opened.get());
    EXPECT_THAT(happened, ElementsAre(u"openof-the-second"_s));

    EXPECT_FALSE(second.openRunningInstance());  // this thread, which would answer, is the one that waits
}

TEST(SessionBus, that_was_started_anew_has_the_name_again_and_a_missing_one_is_no_taken_name) {
    auto bus = std::make_unique<PrivateBus>();
    std::unique_ptr<PrivateBus> next;
    SessionService service(
        bus->connect(), [&] { return next ? next->connect() : QDBusConnection(u"nowhere"_s); });
    ASSERT_EQ(service.claim(), Claim::claimed);
    bus.reset();
    next = std::make_unique<PrivateBus>();
    const QDBusConnection caller = next->connect();
    EXPECT_TRUE(eventually([&] {
        return caller.interface()->isServiceRegistered(QLatin1String(SessionService::name)).value();
    }));
    EXPECT_EQ(SessionService(QDBusConnection(u"nowhere"_s)).claim(), Claim::noSessionBus);
}

}  // namespace
}  // namespace tralio
