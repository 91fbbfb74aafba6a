
#include <sys/stat.h>

#include "platform/portal_fixture.h"

namespace tralio {
namespace {

TEST_F(PortalTest, hot_keys_are_bound_together_and_each_press_counts_once) {
    ASSERT_TRUE(startBound([](auto& told) { told.requiresApplicationId = true; }));
    EXPECT_EQ(textKey.status, HotKeyStatus::registered);
    EXPECT_EQ(desktop->applicationId, u"org.tralio.Tralio");
    EXPECT_EQ(desktop->calls.first(), u"Register");
    EXPECT_THAT(boundIds(), ElementsAre(textShortcut, ocrShortcut));
    EXPECT_EQ(desktop->bound.first().properties.value(u"preferred_trigger"_s).toString(), u"LOGO+SHIFT+d");

    desktop->activate(textShortcut, 1000, {{u"activation_token"_s, u"t"_s}});
    desktop->activate(textShortcut, 1000);
    desktop->activate(u"somebody-elses"_s, 1001);
    desktop->activate(ocrShortcut, 1002);
    ASSERT_TRUE(isPressed(2));
    EXPECT_FALSE(hotKeys->isUserAsked());
    EXPECT_THAT(pressed, ElementsAre(1, 2));
    EXPECT_EQ(qgetenv("XDG_ACTIVATION_TOKEN"), "t");
}

TEST_F(PortalTest, a_desktop_is_asked_what_it_has_bound_and_to_bind_only_what_it_has_not) {
    const std::tuple<std::function<void(ScriptedDesktopPortal&)>, QString, int> cases[] = {
        {[](auto& told) {
             told.remembered = {{ocrShortcut, {}}, {textShortcut, {}}};
         },
            u": bound"_s, 0},
        {[](auto& told) { told.bindsAtCreation = true; }, u": bound"_s, 0},
        {[](auto& told) {
             told.listsOnlyWhenAsked = true;
             told.notBound = ocrShortcut;
         },
            u": not bound"_s, 1},
        {[](auto& told) { told.bindsAndSaysFailed = true; }, u": bound"_s, 1},
    };
    for (const auto& [script, ofOcr, bindings] : cases) {
        log.clear();
        ASSERT_TRUE(startAll(script));
        ASSERT_TRUE(isLogged(ocrShortcut + ofOcr));
        EXPECT_TRUE(isLogged(textShortcut + u": bound"_s));
        desktop->activate(textShortcut, 1);
        ASSERT_TRUE(isPressed(1));
        EXPECT_EQ(desktop->calls.count(u"BindShortcuts"_s), bindings);
        pressed.clear();
        endAll();
    }
    EXPECT_TRUE(isLogged(textShortcut + u": bound to Super+Shift+X"_s)) << "in the desktop's words";

    // KDE lists a shortcut whose keys another program has.
    qputenv("XDG_CURRENT_DESKTOP", "KDE");
    ASSERT_TRUE(startAll([](auto& told) {
        told.remembered = {{textShortcut, {}}, {ocrShortcut, {{u"trigger_description"_s, QString()}}}};
    }));
    EXPECT_TRUE(isTold(HotKeyStatus::taken));
    EXPECT_THAT(statuses, testing::Contains(HotKeyStatus::registered));
    desktop->activate(ocrShortcut, 1);
    EXPECT_TRUE(isTold(HotKeyStatus::registered)) << "which it has been given since";
    qunsetenv("XDG_CURRENT_DESKTOP");
}

TEST_F(PortalTest, a_hot_key_counts_when_it_is_let_go_and_once_however_long_it_is_held) {
    ASSERT_TRUE(startBound());
    for (int repeat = 0; repeat < 20; ++repeat) {
        ASSERT_TRUE(holds(textShortcut, 1000 + 30 * repeat));
        clock.advance(200ms);
    }
    EXPECT_TRUE(pressed.empty()) << "the popover would get what is still down";
    desktop->activate(textShortcut, 2000);
    ASSERT_TRUE(isPressed(1));

    // One desktop does not tell of the release, and another key ends the hold of this one.
    ASSERT_TRUE(holds(textShortcut, 3000));
    clock.advance(1s);
    EXPECT_EQ(pressed.size(), 2U);
    ASSERT_TRUE(holds(textShortcut, 4000));
    desktop->activate(ocrShortcut, 4100);
    ASSERT_TRUE(isPressed(4));
    EXPECT_THAT(pressed, ElementsAre(1, 1, 1, 2));
    clock.advance(5s);
    EXPECT_EQ(pressed.size(), 4U);
}

TEST_F(PortalTest, a_new_session_binds_a_changed_hot_key_with_the_other_and_both_when_the_desktop_ends_it) {
    ASSERT_TRUE(startBound());
    desktop->bound.clear();
    hotKeys->unregisterHotKey(*textKey.ref);
    ASSERT_EQ(registerText(KeyCode::t), HotKeyStatus::registered);
    ASSERT_TRUE(isBound());
    EXPECT_TRUE(desktop->calls.contains(u"Close"_s));
    EXPECT_EQ(desktop->calls.count(u"CreateSession"_s), 2);
    const QString changed = u"translate-selection.LOGO+SHIFT+t"_s;
    EXPECT_THAT(boundIds(), testing::UnorderedElementsAre(changed, ocrShortcut));
    desktop->activate(textShortcut, 1);
    desktop->activate(changed, 2);
    ASSERT_TRUE(isPressed(1));

    // A key that is refused takes the one before it away.
    EXPECT_EQ(registerText(KeyCode::s), HotKeyStatus::taken);
    EXPECT_TRUE(isBound(1));

    // A session that the desktop ends is made again once.
    desktop->bound.clear();
    desktop->endSession();
    ASSERT_TRUE(isBound(1));
    desktop->bound.clear();
    statuses.clear();
    desktop->endSession();
    EXPECT_TRUE(isTold(HotKeyStatus::unavailable)) << "no session, until one may be made";
    const auto before = desktop->calls.count(u"CreateSession"_s);
    ASSERT_EQ(registerText(KeyCode::t), HotKeyStatus::registered);
    ASSERT_TRUE(isBound());
    EXPECT_EQ(desktop->calls.count(u"CreateSession"_s), before + 1);
}

TEST_F(PortalTest, a_silent_list_keeps_the_hot_keys_from_being_bound_for_its_time_limit_only) {
    ASSERT_TRUE(startAll([](auto& told) { told.silentMethods = {u"ListShortcuts"_s}; }));
    ASSERT_TRUE(isCalled(u"ListShortcuts"_s));
    EXPECT_TRUE(desktop->bound.isEmpty());
    desktop->silentMethods += u"BindShortcuts"_s;
    clock.advance(30s);
    ASSERT_TRUE(isCalled(u"BindShortcuts"_s));
    EXPECT_TRUE(hotKeys->isUserAsked()) << "as far as one can tell";
    endAll();

    // No answer to what was bound is no refusal, and a press says more.
    log.clear();
    ASSERT_TRUE(startAll([](auto& told) {
        told.listsOnlyWhenAsked = true;
        told.goesSilentWith = u"BindShortcuts"_s;
    }));
    ASSERT_TRUE(isBound() && isCalled(u"ListShortcuts"_s, 2));
    clock.advance(30s);
    ASSERT_TRUE(isLogged(u"hot keys not listed: no answer"_s));
    EXPECT_FALSE(log.messages().join(u'\n').contains(u": not bound"_s));
    desktop->silentMethods.clear();
    desktop->activate(textShortcut, 1);
    EXPECT_TRUE(isLogged(textShortcut + u": bound"_s));
}

TEST_F(PortalTest, refusals_leave_the_program_without_hot_keys_and_otherwise_well) {
    ASSERT_TRUE(startAll([](auto& told) {
        told.hasRegistry = false;
        told.requiresApplicationId = true;
    }));
    ASSERT_TRUE(isTold(HotKeyStatus::unavailable));
    (void)capture({});  // by which the desktop has heard whatever was asked before
    EXPECT_FALSE(desktop->calls.contains(u"BindShortcuts"_s));

    for (const quint32 nobodysKey : {52U, 127U, 4294967295U})
        EXPECT_EQ(registerText(KeyCode{nobodysKey}), HotKeyStatus::invalid);
    for (const KeyCode typed : {KeyCode::d, KeyCode{114}})  // which is Insert
        EXPECT_EQ(registerText(typed, Modifier::shift), HotKeyStatus::invalid);
    EXPECT_EQ(registerText(KeyCode::s), HotKeyStatus::taken);
}

TEST_F(PortalTest, a_portal_that_talks_rubbish_is_one_without_hot_keys_and_screenshots) {
    const QTemporaryDir folder;
    const QString wanted = folder.filePath(u"wanted.png"_s);
    const QString pipe = folder.filePath(u"pipe"_s);
    ASSERT_EQ(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    const QVariant numbers = QVariant::fromValue(QList<int>{1, 2, 3});
    for (const QVariantMap& rubbish : {QVariantMap{{u"session_handle"_s, 7}, {u"uri"_s, 7}},
             {{u"session_handle"_s, u"no path"_s}, {u"uri"_s, u"file:///"_s}},
             {{u"shortcuts"_s, numbers}, {u"uri"_s, numbers}},
             {{u"shortcuts"_s, QVariantMap{{u"a"_s, numbers}}}, {u"uri"_s, u"file:///dev/zero"_s}},
             {{u"shortcuts"_s, QStringList{u"capture-screen"_s}}, {u"uri"_s, u"file://"_s + pipe}}}) {
        statuses.clear();
        ASSERT_TRUE(startAll([&](auto& desktop) { desktop.rubbish = rubbish; }));
        EXPECT_TRUE(eventually([&] { return statuses.size() == 2; }));
        EXPECT_THAT(statuses,
            testing::Each(
                rubbish.contains(u"session_handle"_s) ? HotKeyStatus::unavailable : HotKeyStatus::refused));
        EXPECT_NE(capture(wanted), 0);
        EXPECT_FALSE(QFile::exists(wanted));
        endAll();
    }
    EXPECT_TRUE(pressed.empty());
}

TEST_F(PortalTest, a_portal_that_comes_later_anew_or_in_anothers_place_gets_the_hot_keys_then) {
    launch();
    registerBoth();
    EXPECT_EQ(textKey.status, HotKeyStatus::unavailable);
    int timesKnown = 0;
    QObject::connect(&*portal, &Portal::ready, &*portal, [&] { ++timesKnown; });
    for (int start = 0; start < 2; ++start) {
        startPortal();
        ASSERT_TRUE(isBound());
        desktop->activate(ocrShortcut, 5 + start);
        ASSERT_TRUE(isPressed(1));
        pressed.clear();
        statuses.clear();
        desktop.reset();
        ASSERT_TRUE(
            eventually([&] { return portal->version(QLatin1String(PortalHotKeys::interface)) == 0; }));
        const int before = timesKnown;
        const auto timers = clock.pending();
        clock.advance(4s);
        EXPECT_EQ(clock.pending(), timers) << "it may come back by itself";
        clock.advance(1s);
        EXPECT_TRUE(eventually([&] { return timesKnown > before; })) << "it was called for";
        EXPECT_TRUE(eventually([&] { return statuses.size() >= 2; })) << "it is not coming back";
        EXPECT_THAT(statuses, testing::Each(HotKeyStatus::unavailable));
    }

    startPortal();
    ASSERT_TRUE(isBound());
    ScriptedDesktopPortal successor(bus.connect());
    ASSERT_TRUE(eventually([&] { return successor.bound.size() == 2; }));
    EXPECT_EQ(successor.applicationId, u"org.tralio.Tralio");
    successor.activate(ocrShortcut, 9);
    EXPECT_TRUE(isPressed(1));
}

TEST_F(PortalTest, a_portal_that_takes_long_to_say_its_versions_holds_up_no_registration) {
    startPortal([](auto& told) { told.saysVersions = false; });
    launch();
    ASSERT_TRUE(eventually([&] { return desktop->versionsAsked == 4; }));  // in haste, then in patience
    const Stopwatch time;
    registerBoth();
    EXPECT_EQ(textKey.status, HotKeyStatus::unavailable);
    EXPECT_LT(time.elapsed(), 5000);
}

TEST_F(PortalTest, a_backend_that_ends_costs_no_hot_key_but_one_that_ends_at_every_session_is_asked_rarely) {
    QDBusConnection backend = bus.connect();
    const QString name = u"org.freedesktop.impl.portal.desktop.scripted"_s;
    backend.registerService(name);
    ASSERT_TRUE(startAll());
    for (int start = 1; start <= 2; ++start) {
        ASSERT_TRUE(isBound());
        desktop->activate(ocrShortcut, start);
        ASSERT_TRUE(isPressed(static_cast<size_t>(start)));
        desktop->bound.clear();
        backend.unregisterService(name);
        backend.registerService(name);
    }
    ASSERT_TRUE(isBound());
    statuses.clear();
    backend.unregisterService(name);
    ASSERT_TRUE(isTold(HotKeyStatus::unavailable));
    EXPECT_EQ(desktop->calls.count(u"CreateSession"_s), 3);
    desktop->bound.clear();
    clock.advance(1min);
    ASSERT_TRUE(isBound());
    EXPECT_EQ(desktop->calls.count(u"CreateSession"_s), 4);

    statuses.clear();
    backend.registerService(name);
    backend.unregisterService(name);
    ASSERT_TRUE(isTold(HotKeyStatus::unavailable));
    clock.advance(1min);  // no longer long enough
    ASSERT_TRUE(holds(ocrShortcut, 100));
    (void)capture({});
    EXPECT_EQ(desktop->calls.count(u"CreateSession"_s), 4) << "the release would be lost with the session";
    desktop->activate(ocrShortcut, 101);
    EXPECT_TRUE(isTold(HotKeyStatus::registered)) << "a press tells that they work";
}

TEST_F(PortalTest, a_hot_key_that_changes_before_there_is_a_session_waits_for_the_answer) {
    ASSERT_TRUE(startAll([](auto& told) { told.silentMethods = {u"CreateSession"_s}; }));
    ASSERT_TRUE(isCalled(u"CreateSession"_s));
    registerText(KeyCode::t);
    ASSERT_TRUE(nextTurn());
    EXPECT_EQ(desktop->calls.count(u"CreateSession"_s), 1);
    desktop->silentMethods.clear();
    clock.advance(30s);
    ASSERT_TRUE(isBound());
    EXPECT_THAT(boundIds(), ElementsAre(ocrShortcut, u"translate-selection.LOGO+SHIFT+t"_s));
    EXPECT_EQ(desktop->calls.count(u"CreateSession"_s), 2);
}

}  // namespace
}  // namespace tralio
