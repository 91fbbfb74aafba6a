#include "platform/linux/bus/session_service.h"

#include <QTemporaryDir>

#include <future>
#include <sys/stat.h>
#include <unistd.h>

#include "common/text_limit.h"
#include "platform/linux/bus/sandbox_id.h"
#include "support/files.h"
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

    void call(const QString& interface, const QString& method, const QVariantList& arguments = {}) {
        auto message = QDBusMessage::createMethodCall(
            QLatin1String(SessionService::name), QLatin1String(SessionService::path), interface, method);
        message.setArguments(arguments);
        caller.send(message);
    }
    void callOwn(const QString& method, const QVariantList& arguments = {}) {
        call(u"org.tralio.Tralio"_s, method, arguments);
    }
    void callStandard(const QString& action, const QVariantList& arguments = {}) {
        call(u"org.freedesktop.Application"_s, u"ActivateAction"_s,
            {action, QVariant(arguments), QVariantMap()});
    }

    PrivateBus bus;
    QDBusConnection caller = bus.connect();
    SessionService service{bus.connect()};
    QStringList happened;
};

TEST_F(Session, anybody_on_the_bus_can_ask_for_each_action_by_either_interface) {
    const QString text = u"Ấy  là\nhai dòng"_s;
    callOwn(u"TranslateSelection"_s);
    callOwn(u"CaptureScreen"_s);
    callOwn(u"Open"_s);
    callOwn(u"TranslateText"_s, {text});
    callStandard(u"translate-selection"_s);
    callStandard(u"no-such-action"_s);
    callStandard(u"translate-text"_s, {text});
    callStandard(u"capture-screen"_s);
    ASSERT_TRUE(eventually([&] { return happened.size() == 7; }));
    EXPECT_THAT(happened,
        ElementsAre(u"selection"_s, u"capture"_s, u"open"_s, u"text:"_s + text, u"selection"_s,
            u"text:"_s + text, u"capture"_s));

    happened.clear();
    const QString tooLong(3 * longestText, u'a');
    callOwn(u"TranslateText"_s, {tooLong});
    callStandard(u"translate-text"_s, {tooLong});
    ASSERT_TRUE(eventually([&] { return happened.size() == 2; }));
    for (const QString& taken : happened)
        EXPECT_EQ(taken.size(), u"text:"_s.size() + longestText + 1) << "the beginning is handed on";
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

TEST(SandboxId, is_what_the_sandbox_says_and_a_pipe_in_its_place_is_not_waited_for) {
    const QTemporaryDir folder;
    const auto idIn = [](const QString& path) { return sandboxId(path.toLocal8Bit()); };
    EXPECT_EQ(idIn(writeFile(folder.filePath(u"info"_s),
                  "[Context]\nname=no\n[Application]\nname=org.example.App\nruntime=x\n")),
        u"org.example.App"_s);
    const QString pipe = folder.filePath(u"pipe"_s);
    ASSERT_EQ(mkfifo(pipe.toLocal8Bit().constData(), 0600), 0);
    EXPECT_EQ(idIn(pipe), QString());
    EXPECT_EQ(sandboxId(getpid()), QString());
}

}  // namespace
}  // namespace tralio
