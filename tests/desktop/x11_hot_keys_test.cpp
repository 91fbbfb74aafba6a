#include "platform/linux/x11/x11_hot_keys.h"

#include <xcb/xcb_keysyms.h>

#include "desktop/x11_fixture.h"
#include "platform/linux/keyboard/key_codes.h"
#include "platform/linux/x11/x11_key_event_poster.h"

namespace tralio {
namespace {

constexpr KeyCode keyF5{96};
constexpr Modifiers commandShift = Modifier::command | Modifier::shift;
constexpr HotKeyID anyId{1, 1};

/// The hot keys of one program, on a connection of its own.
struct OneProgram {
    std::unique_ptr<X11Connection> connection = X11Connection::open();
    X11RawInput rawInput{*connection};
    X11HotKeys hotKeys{*connection, rawInput};
};

/// Whether a key without modifiers reaches applications.
bool isFree(X11Connection& connection, KeyCode key) {
    const auto code = *x11KeyCode(key);
    const XcbPtr<xcb_generic_error_t> refused{xcb_request_check(connection.xcb(),
        xcb_grab_key_checked(
            connection.xcb(), 1, connection.root(), 0, code, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC))};
    xcb_ungrab_key(connection.xcb(), code, connection.root(), 0);
    connection.sync();
    return refused == nullptr;
}

TEST_F(X11, hot_keys_are_refused_while_another_program_has_them) {
    OneProgram ours;
    OneProgram theirs;
    X11HotKeys& hotKeys = ours.hotKeys;
    X11HotKeys& others = theirs.hotKeys;
    const auto taken = others.registerHotKey({KeyCode::d, commandShift}, anyId);
    ASSERT_EQ(taken.status, HotKeyStatus::registered);
    EXPECT_EQ(hotKeys.registerHotKey({KeyCode::d, commandShift}, anyId).status, HotKeyStatus::taken);
    EXPECT_EQ(
        hotKeys.registerHotKey({KeyCode::t, Modifier::command}, anyId).status, HotKeyStatus::registered);

    others.unregisterHotKey(*taken.ref);
    theirs.connection->sync();
    EXPECT_EQ(hotKeys.registerHotKey({KeyCode::d, commandShift}, anyId).status, HotKeyStatus::registered);
    EXPECT_EQ(hotKeys.registerHotKey({KeyCode::d, commandShift}, anyId).status, HotKeyStatus::taken);
}

TEST_F(X11, hot_keys_that_people_type_with_are_refused) {
    OneProgram ours;
    X11HotKeys& hotKeys = ours.hotKeys;
    for (const Modifiers modifiers : {Modifiers(), Modifiers(Modifier::shift)})
        EXPECT_EQ(hotKeys.registerHotKey({KeyCode::d, modifiers}, anyId).status, HotKeyStatus::invalid);
    EXPECT_EQ(hotKeys.registerHotKey({keyF5, {}}, anyId).status, HotKeyStatus::registered);
    for (const quint32 noSuchKey : {52U, 127U, 128U, 4294967295U})
        EXPECT_EQ(
            hotKeys.registerHotKey({KeyCode{noSuchKey}, commandShift}, anyId).status, HotKeyStatus::invalid);
}

TEST_F(X11, hot_keys_tell_their_presses_apart_and_let_the_keyboard_go) {
    OneProgram ours;
    X11HotKeys& hotKeys = ours.hotKeys;
    std::vector<quint32> pressed;
    hotKeys.installEventHandler([&](std::optional<HotKeyID> id) { pressed.push_back(id->id); });
    ASSERT_EQ(hotKeys.registerHotKey({KeyCode::d, commandShift}, {1, 1}).status, HotKeyStatus::registered);
    const auto second = hotKeys.registerHotKey({KeyCode::t, Modifier::control}, {1, 2});
    ASSERT_EQ(second.status, HotKeyStatus::registered);

    // While the keys are still down, the keyboard is free for others, and repeats are no presses.
    repeatsFast();
    desktop.hold({u"super"_s, u"shift"_s, u"d"_s});
    ASSERT_TRUE(waitUntil([&] { return pressed.size() == 1; }));
    EXPECT_FALSE(waitUntil([&] { return pressed.size() > 1; }, 1)) << "a repeat counts as a press";
    const auto other = X11Connection::open();
    // At once but for the moment in which a repeat has been made and not been heard of.
    EXPECT_TRUE(waitUntil(
        [&] {
            const XcbPtr<xcb_grab_keyboard_reply_t> grab{xcb_grab_keyboard_reply(other->xcb(),
                xcb_grab_keyboard(other->xcb(), 1, other->root(), XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC,
                    XCB_GRAB_MODE_ASYNC),
                nullptr)};
            return grab && grab->status == XCB_GRAB_STATUS_SUCCESS;
        },
        1));
    xcb_ungrab_keyboard(other->xcb(), XCB_CURRENT_TIME);
    other->sync();
    desktop.release({u"d"_s, u"shift"_s, u"super"_s});

    desktop.press(u"ctrl+t"_s);
    ASSERT_TRUE(waitUntil([&] { return pressed.size() == 2; }));
    EXPECT_THAT(pressed, testing::ElementsAre(1, 2));

    // A key that is given up is given up; the other works on.
    hotKeys.unregisterHotKey(*second.ref);
    desktop.press(u"ctrl+t"_s);
    desktop.press(u"super+shift+d"_s);
    ASSERT_TRUE(waitUntil([&] { return pressed.size() == 3; }));
    EXPECT_EQ(pressed.back(), 1U);
}

TEST_F(X11, a_hot_key_that_is_registered_while_it_is_held_takes_no_repeat_for_a_press) {
    OneProgram ours;
    X11HotKeys& hotKeys = ours.hotKeys;
    std::vector<quint32> pressed;
    hotKeys.installEventHandler([&](std::optional<HotKeyID> id) { pressed.push_back(id->id); });
    ASSERT_EQ(hotKeys.registerHotKey({keyF5, Modifier::control}, {1, 2}).status, HotKeyStatus::registered);

    repeatsFast();
    desktop.hold({u"ctrl"_s, u"t"_s});
    ASSERT_EQ(
        hotKeys.registerHotKey({KeyCode::t, Modifier::control}, {1, 1}).status, HotKeyStatus::registered);
    EXPECT_FALSE(waitUntil([&] { return !pressed.empty(); }, 1)) << "a repeat counts as a press";
    desktop.hold({u"F5"_s});
    ASSERT_TRUE(waitUntil([&] { return !pressed.empty(); }));
    EXPECT_THAT(pressed, testing::ElementsAre(2));
    desktop.release({u"F5"_s, u"t"_s, u"ctrl"_s});

    // Neither key stays with us once it has been released.
    OneProgram theirs;
    X11HotKeys& others = theirs.hotKeys;
    for (const KeyCode key : {KeyCode::t, keyF5})
        EXPECT_TRUE(waitUntil([&] {
            return others.registerHotKey({key, commandShift}, anyId).status == HotKeyStatus::registered;
        }));
    desktop.press(u"ctrl+t"_s);
    ASSERT_TRUE(waitUntil([&] { return pressed.size() == 2; }));
    EXPECT_EQ(pressed.back(), 1U);
}

TEST_F(X11, a_hot_key_that_is_tapped_again_while_its_modifiers_count_as_released_is_a_hot_key) {
    OneProgram ours;
    X11KeyEventPoster keyEvents(*ours.connection, ours.hotKeys, [] { return std::nullopt; });
    std::vector<quint32> pressed;
    ours.hotKeys.installEventHandler([&](std::optional<HotKeyID> id) { pressed.push_back(id->id); });
    ASSERT_EQ(
        ours.hotKeys.registerHotKey({KeyCode::d, commandShift}, {1, 1}).status, HotKeyStatus::registered);
    ASSERT_EQ(
        ours.hotKeys.registerHotKey({KeyCode::s, commandShift}, {1, 2}).status, HotKeyStatus::registered);
    const auto other = X11Connection::open();
    const auto reachesApplications = [&other](KeyCode key) { return isFree(*other, key); };
    ASSERT_TRUE(reachesApplications(KeyCode::d));

    desktop.hold({u"super"_s, u"shift"_s, u"d"_s});
    ASSERT_TRUE(waitUntil([&] { return pressed.size() == 1; }));
    EXPECT_FALSE(reachesApplications(KeyCode::d)) << "held, it would be typed";
    for (const KeyCode modifier : {KeyCode::leftCommand, KeyCode::leftShift})
        keyEvents.post({modifier, false, {}});
    keyEvents.post({KeyCode::c, true, Modifier::command});
    keyEvents.post({KeyCode::c, false, Modifier::command});
    desktop.release({u"d"_s});
    desktop.press(u"s"_s);
    ASSERT_TRUE(waitUntil([&] { return pressed.size() == 2; }));
    // Whoever taps a key lets go of it in between.
    EXPECT_TRUE(waitUntil([&] {
        desktop.press(u"d"_s);
        return pressed.size() == 3;
    }));
    EXPECT_THAT(pressed, testing::ElementsAre(1, 2, 1));

    desktop.release({u"shift"_s});
    EXPECT_TRUE(waitUntil([&] { return reachesApplications(KeyCode::d) && reachesApplications(KeyCode::s); }))
        << "nobody could type it any more";
    desktop.press(u"super+shift+d"_s);
    EXPECT_TRUE(waitUntil([&] { return pressed.size() == 4; }));
}

TEST_F(X11, keys_that_are_let_go_while_a_synthetic_copy_is_under_way_are_not_missed) {
    OneProgram ours;
    X11KeyEventPoster keyEvents(*ours.connection, ours.hotKeys, [] { return std::nullopt; });
    int presses = 0;
    ours.hotKeys.installEventHandler([&](std::optional<HotKeyID>) { ++presses; });
    for (const KeyCode key : {KeyCode::d, KeyCode::c})
        ASSERT_EQ(
            ours.hotKeys.registerHotKey({key, commandShift}, textHotKeyID).status, HotKeyStatus::registered);
    desktop.start(QStringLiteral(SELECTION_PROBE), {u"-name"_s, u"konsole"_s, u"text"_s});
    ASSERT_FALSE(desktop.bringToFront(u"selection-probe"_s).isEmpty());
    const auto other = X11Connection::open();
    for (const QString& key : {u"d"_s, u"c"_s}) {
        presses = 0;
        desktop.hold({u"super"_s, u"shift"_s, key});
        ASSERT_TRUE(waitUntil([&] { return presses == 1; }));
        if (key == u"d")
            desktop.release({key});
        for (const KeyCode modifier : {KeyCode::leftCommand, KeyCode::leftShift})
            keyEvents.post({modifier, false, {}});
        desktop.release({u"shift"_s, u"super"_s});
        keyEvents.post({KeyCode::c, true, Modifier::command});
        if (key == u"c")
            desktop.release({key});
        keyEvents.post({KeyCode::c, false, Modifier::command});
        for (const KeyCode typed : {KeyCode::d, KeyCode::c})
            EXPECT_TRUE(waitUntil(
                [&] {
                    ours.connection->dispatchPending();
                    return isFree(*other, typed);
                },
                2))
                << "nobody can type it";
    }
}

TEST_F(X11, keys_are_where_their_table_says_and_mean_there_what_it_says) {
    const auto connection = X11Connection::open();
    const std::unique_ptr<xcb_key_symbols_t, decltype(&xcb_key_symbols_free)> symbols{
        xcb_key_symbols_alloc(connection->xcb()), &xcb_key_symbols_free};
    int compared = 0;
    for (quint32 code = 0; code < 128; ++code) {
        const Key* key = keyWith(KeyCode{code});
        if (!key)
            continue;
        const auto xKeyCode = *x11KeyCode(key->code);
        EXPECT_EQ(keyWithX11Code(xKeyCode), key->code);
        std::vector<quint32> meanings;
        for (const int column : {0, 1})
            meanings.push_back(xcb_key_symbols_get_keysym(symbols.get(), xKeyCode, column));
        // The server's keyboard has none of the keys that only Apple's or a Japanese one has.
        if (key->keysym == 0 || meanings.front() == XCB_NO_SYMBOL || meanings.front() >= 0x10000000)
            continue;
        ++compared;
        EXPECT_THAT(meanings, testing::Contains(key->keysym)) << "key " << code;
    }
    EXPECT_GT(compared, 90);
}

TEST_F(X11, a_synthetic_copy_passes_the_hot_key_that_it_would_trigger) {
    OneProgram ours;
    X11KeyEventPoster keyEvents(*ours.connection, ours.hotKeys, [] { return std::nullopt; });
    int presses = 0;
    ours.hotKeys.installEventHandler([&](std::optional<HotKeyID>) { ++presses; });
    ASSERT_EQ(
        ours.hotKeys.registerHotKey({KeyCode::c, Modifier::control | Modifier::shift}, textHotKeyID).status,
        HotKeyStatus::registered);
    // A terminal, in which this is how one copies.
    desktop.start(QStringLiteral(SELECTION_PROBE), {u"-name"_s, u"konsole"_s, u"text"_s});
    ASSERT_FALSE(desktop.bringToFront(u"selection-probe"_s).isEmpty());
    keyEvents.post({KeyCode::c, true, Modifier::command});
    keyEvents.post({KeyCode::c, false, Modifier::command});
    EXPECT_FALSE(waitUntil([&] { return presses > 0; }, 1));
    desktop.press(u"ctrl+shift+c"_s);
    EXPECT_TRUE(waitUntil([&] { return presses == 1; }));
}

}  // namespace
}  // namespace tralio
