#include <QGuiApplication>
#include <QPalette>

#include <csignal>
#include <future>
#include <sys/stat.h>
#include <unistd.h>

#include "common/text_limit.h"
#include "platform/linux/bus/sandbox_id.h"
#include "platform/linux/bus/session_service.h"
#include "platform/linux/desktop/desktop_appearance.h"
#include "platform/linux/desktop/text_scale.h"
#include "platform/linux/process/end_signals.h"
#include "platform/scripted_settings_portal.h"
#include "support/private_bus.h"

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

    const Stopwatch waiting;
    EXPECT_FALSE(second.openRunningInstance());  // this thread, which would answer, is the one that waits
    EXPECT_LT(waiting.elapsed(), 10'000);
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

/// A login at which the desktop's portal is not there yet, nor an X server.
struct TextScaleTest : testing::Test {
    TextScaleTest() {
        const QByteArray data = QFile::encodeName(folder.path());
        const std::pair<const char*, QByteArray> values[] = {{"XDG_DATA_HOME", data}, {"DISPLAY", {}},
            {"XDG_CURRENT_DESKTOP", "GNOME"}, {"QT_QPA_PLATFORM", {}}};
        for (const auto& [name, value] : values) {
            before.emplace_back(name, qgetenv(name));
            qputenv(name, value);
        }
        QDir().mkpath(folder.filePath(u"tralio"_s));
    }
    ~TextScaleTest() override {
        for (const auto& [name, value] : before)
            qputenv(name, value);
    }
    /// How much everything is enlarged.
    static QByteArray scaleWith(const std::vector<QSize>& compositorScreens) {
        const TextScale scale(QDBusConnection(u"none"_s), [&] { return compositorScreens; });
        return qgetenv("QT_SCALE_FACTOR");
    }

    QTemporaryDir folder;
    std::vector<std::pair<const char*, QByteArray>> before;
};

TEST_F(TextScaleTest, is_what_the_portal_told_last_as_far_as_the_window_has_room) {
    EXPECT_EQ(scaleWith({}), QByteArray());
    for (const double told : {1.25, 2.0, 1.5}) {
        TextScale::remember(told);
        EXPECT_EQ(scaleWith({}).toDouble(), told);
    }
    TextScale::remember(1);
    EXPECT_EQ(scaleWith({}), QByteArray());
    TextScale::remember(1.5);
    const std::vector<QSize> small{{1920, 1080}, {640, 480}};
    EXPECT_EQ(scaleWith(small).toDouble(), 1.5) << "an X server tells of its own screens";
    qputenv("QT_SCALE_FACTOR", "2");
    EXPECT_EQ(scaleWith({}).toDouble(), 3) << "on top of what the user has asked of the toolkit";
    EXPECT_EQ(qgetenv("QT_SCALE_FACTOR"), "2") << "which programs that are started inherit";
    qunsetenv("QT_SCALE_FACTOR");
    EXPECT_NE(scaleWith({}), QByteArray());
    EXPECT_FALSE(qEnvironmentVariableIsSet("QT_SCALE_FACTOR"));
    qputenv("QT_QPA_PLATFORM", "wayland;xcb");
    EXPECT_NEAR(scaleWith(small).toDouble(), 480 / 440.0, .01);
    EXPECT_EQ(scaleWith({{640, 360}}), QByteArray()) << "never smaller than it is";
}

/// A colour as the portal sends it.
struct PortalColour {
    double red, green, blue;
};

QDBusArgument& operator<<(QDBusArgument& argument, const PortalColour& colour) {
    argument.beginStructure();
    argument << colour.red << colour.green << colour.blue;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, PortalColour& /*colour*/) {
    return argument;
}

struct AppearanceTest : TextScaleTest {
    AppearanceTest() { qDBusRegisterMetaType<PortalColour>(); }

    static QVariant colour(double red, double green, double blue) {
        return QVariant::fromValue(PortalColour{red, green, blue});
    }
    /// Waits for the portal's word.
    bool comes(const DesktopAppearance::Look& look) {
        return eventually([&] { return appearance->look() == look; });
    }

    PrivateBus bus;
    std::optional<ScriptedSettingsPortal> portal{bus.connect()};
    std::optional<DesktopAppearance> appearance;
};

TEST_F(AppearanceTest, is_the_portals_and_where_that_says_nothing_the_palettes) {
    portal->settings = {{appearanceSettings,
                            {{u"color-scheme"_s, 1U}, {u"accent-color"_s, colour(1, 0, 0)}, {u"other"_s, 7}}},
        {gnomeSettings, {{u"enable-animations"_s, false}}}};
    appearance.emplace(bus.connect());
    int changes = 0;
    QObject::connect(&*appearance, &DesktopAppearance::changed, &*appearance, [&] { ++changes; });
    EXPECT_TRUE(comes({true, QColor(Qt::red), true}));
    EXPECT_EQ(changes, 1);

    portal->change(appearanceSettings, u"accent-color"_s, colour(0, 1, 0));
    EXPECT_TRUE(comes({true, QColor(Qt::green), true}));
    for (const QVariant& none : {colour(0, 0, 1.5), colour(-1, 0, 0), QVariant(u"red"_s)}) {
        portal->change(appearanceSettings, u"accent-color"_s, none);
        EXPECT_TRUE(comes({true, {}, true}));
        portal->change(appearanceSettings, u"accent-color"_s, colour(0, 1, 0));
        EXPECT_TRUE(comes({true, QColor(Qt::green), true}));
    }
    const int before = changes;
    EXPECT_EQ(before, 8) << "one for each";
    portal->change(gnomeSettings, u"accent-color"_s, colour(0, 0, 1));
    portal->change(appearanceSettings, u"color-scheme"_s, 2U);
    EXPECT_TRUE(comes({false, QColor(Qt::green), true}));
    EXPECT_EQ(changes, before + 1) << "of what is not known nothing changes";

    portal->change(appearanceSettings, u"color-scheme"_s, 0U);
    for (const bool dark : {true, false}) {
        QGuiApplication::setPalette(QPalette(dark ? Qt::black : Qt::white));
        EXPECT_TRUE(comes({dark, QColor(Qt::green), true}));
    }
    EXPECT_GE(changes, before + 3) << "the palette's changes count, too";
    QGuiApplication::setPalette(QPalette());

    portal.reset();
    portal.emplace(bus.connect()).settings = {{appearanceSettings, {{u"color-scheme"_s, 1U}}}};
    EXPECT_TRUE(comes({true, QColor(Qt::green), true})) << "which has started again";
}

TEST_F(AppearanceTest, gives_the_next_start_the_text_scale_that_the_portal_tells_last) {
    portal->settings[gnomeSettings] = {{u"text-scaling-factor"_s, 1.25}};
    appearance.emplace(bus.connect());
    EXPECT_TRUE(eventually([] { return scaleWith({}).toDouble() == 1.25; }));
    for (const QVariant& nonsense :
        {QVariant(u"large"_s), QVariant(0.0), QVariant(-2.0), QVariant(qInf()), QVariant(qQNaN())}) {
        portal->change(gnomeSettings, u"text-scaling-factor"_s, 1.2000000000000002);
        portal->change(gnomeSettings, u"text-scaling-factor"_s, nonsense);
        portal->change(gnomeSettings, u"enable-animations"_s, false);
        EXPECT_TRUE(comes({false, {}, true}));
        EXPECT_EQ(scaleWith({}).toDouble(), 1.2) << qPrintable(nonsense.toString());
        portal->change(gnomeSettings, u"enable-animations"_s, true);
        EXPECT_TRUE(comes({}));
    }
    portal->settings[gnomeSettings].remove(u"text-scaling-factor"_s);
    appearance.emplace(bus.connect());
    EXPECT_TRUE(eventually([] { return scaleWith({}).isEmpty(); })) << "another desktop has none";
}

}  // namespace
}  // namespace tralio
