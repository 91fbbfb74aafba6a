#include "platform/linux/x11/x11_hot_keys.h"

#include <xcb/xtest.h>

#include "desktop/fixtures.h"
#include "platform/linux/keyboard/key_codes.h"
#include "platform/linux/x11/key_symbols.h"
#include "platform/linux/x11/x11_key_event_poster.h"

namespace tralio {
namespace {

constexpr KeyCode keyF5{96};
constexpr Modifiers commandShift = Modifier::command | Modifier::shift;
constexpr HotKeyStatus registered = HotKeyStatus::registered;

/// The hot keys of one program, on its own connection.
struct OneProgram {
    OneProgram() {
        hotKeys.installEventHandler([this](std::optional<HotKeyID> id) { pressed.push_back(id->id); });
    }
    HotKeyStatus take(const KeyCombination& combination, quint32 number = 1) {
        return hotKeys.registerHotKey(combination, {1, number}).status;
    }
    [[nodiscard]] bool isPressed(size_t times) const {
        return waitUntil([&] { return pressed.size() == times; });
    }
    void letGoOfModifiers() {
        for (const KeyCode modifier : {KeyCode::leftCommand, KeyCode::leftShift})
            keyEvents.post({modifier, false, {}});
    }
    void postCopyKey(bool down) { keyEvents.post({KeyCode::c, down, Modifier::command}); }

    std::unique_ptr<X11Connection> connection = X11Connection::open();
    X11RawInput rawInput{*connection};
    X11HotKeys hotKeys{*connection, rawInput};
    X11KeyEventPoster keyEvents{*connection, hotKeys, [] { return std::nullopt; }};
    std::vector<quint32> pressed;  ///< the ids of the hot keys
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

TEST_F(X11, hot_keys_are_refused_the_second_time_and_when_people_type_with_them) {
    OneProgram ours;
    EXPECT_EQ(ours.take({KeyCode::d, commandShift}), registered);
    EXPECT_EQ(ours.take({KeyCode::d, commandShift}), HotKeyStatus::taken);
    for (const Modifiers modifiers : {Modifiers(), Modifiers(Modifier::shift)})
        EXPECT_EQ(ours.take({KeyCode::d, modifiers}), HotKeyStatus::invalid);
    EXPECT_EQ(ours.take({keyF5, {}}), registered);
    for (const quint32 noSuchKey : {52U, 127U, 128U, 4294967295U})
        EXPECT_EQ(ours.take({KeyCode{noSuchKey}, commandShift}), HotKeyStatus::invalid);
}

TEST_F(X11, hot_keys_tell_their_presses_apart_and_let_the_keyboard_go) {
    OneProgram ours;
    ASSERT_EQ(ours.take({KeyCode::d, commandShift}), registered);
    const auto second = ours.hotKeys.registerHotKey({KeyCode::t, Modifier::control}, {1, 2});
    ASSERT_EQ(second.status, registered);

    // While the keys are still held, other programs can grab the keyboard, and repeats do not count as
    // presses.
    desktop.repeatsFast();
    desktop.hold({u"super"_s, u"shift"_s, u"d"_s});
    ASSERT_TRUE(ours.isPressed(1));
    EXPECT_FALSE(waitUntil([&] { return ours.pressed.size() > 1; }, 1)) << "a repeat counts as a press";
    const auto other = X11Connection::open();
    // Immediately, except for a repeat that is generated but not yet received.
    EXPECT_TRUE(waitUntil([&] { return takesKeyboard(*other); }, 1));
    xcb_ungrab_keyboard(other->xcb(), XCB_CURRENT_TIME);
    other->sync();
    desktop.release({u"d"_s, u"shift"_s, u"super"_s});

    desktop.press(u"ctrl+t"_s);
    ASSERT_TRUE(ours.isPressed(2));

    // After one hot key is given up, the other still works.
    ours.hotKeys.unregisterHotKey(*second.ref);
    desktop.press(u"ctrl+t"_s);
    desktop.press(u"super+shift+d"_s);
    ASSERT_TRUE(ours.isPressed(3));
    EXPECT_THAT(ours.pressed, ElementsAre(1, 2, 1));
}

TEST_F(X11, a_hot_key_that_is_registered_while_it_is_held_takes_no_repeat_for_a_press) {
    OneProgram ours;
    ASSERT_EQ(ours.take({keyF5, Modifier::control}, 2), registered);

    desktop.repeatsFast();
    desktop.hold({u"ctrl"_s, u"t"_s});
    ASSERT_EQ(ours.take({KeyCode::t, Modifier::control}, 1), registered);
    EXPECT_FALSE(waitUntil([&] { return !ours.pressed.empty(); }, 1)) << "a repeat counts as a press";
    desktop.hold({u"F5"_s});
    ASSERT_TRUE(ours.isPressed(1));
    desktop.release({u"F5"_s, u"t"_s, u"ctrl"_s});

    // Both keys are released after the hot key is.
    OneProgram theirs;
    for (const KeyCode key : {KeyCode::t, keyF5})
        EXPECT_TRUE(waitUntil([&] { return theirs.take({key, commandShift}) == registered; }));
    desktop.press(u"ctrl+t"_s);
    ASSERT_TRUE(ours.isPressed(2));
    EXPECT_THAT(ours.pressed, ElementsAre(2, 1));
}

TEST_F(X11, a_hot_key_that_is_tapped_again_while_its_modifiers_count_as_released_is_a_hot_key) {
    OneProgram ours;
    ASSERT_EQ(ours.take({KeyCode::d, commandShift}, 1), registered);
    ASSERT_EQ(ours.take({KeyCode::s, commandShift}, 2), registered);
    const auto other = X11Connection::open();
    ASSERT_TRUE(isFree(*other, KeyCode::d));

    desktop.hold({u"super"_s, u"shift"_s, u"d"_s});
    ASSERT_TRUE(ours.isPressed(1));
    EXPECT_FALSE(isFree(*other, KeyCode::d)) << "held, it would be typed";
    ours.letGoOfModifiers();
    ours.postCopyKey(true);
    ours.postCopyKey(false);
    desktop.release({u"d"_s});
    desktop.press(u"s"_s);
    ASSERT_TRUE(ours.isPressed(2));
    // Users release a key before they tap it again.
    EXPECT_TRUE(waitUntil([&] {
        desktop.press(u"d"_s);
        return ours.pressed.size() == 3;
    }));
    EXPECT_THAT(ours.pressed, ElementsAre(1, 2, 1));

    desktop.release({u"shift"_s});
    EXPECT_TRUE(waitUntil([&] { return isFree(*other, KeyCode::d) && isFree(*other, KeyCode::s); }))
        << "nobody could type it any more";
    desktop.press(u"super+shift+d"_s);
    EXPECT_TRUE(ours.isPressed(4));
}

TEST_F(X11, a_synthetic_copy_misses_no_key_that_is_let_go_meanwhile_and_passes_the_hot_key_of_its_keys) {
    OneProgram ours;
    for (const KeyCode key : {KeyCode::d, KeyCode::c})
        ASSERT_EQ(ours.take({key, commandShift}), registered);
    // A terminal, in which Control+Shift+C copies.
    desktop.startProbe({u"-name"_s, u"konsole"_s, u"text"_s});
    const auto other = X11Connection::open();
    for (const QString& key : {u"d"_s, u"c"_s}) {
        ours.pressed.clear();
        desktop.hold({u"super"_s, u"shift"_s, key});
        ASSERT_TRUE(ours.isPressed(1));
        if (key == u"d")
            desktop.release({key});
        ours.letGoOfModifiers();
        desktop.release({u"shift"_s, u"super"_s});
        ours.postCopyKey(true);
        if (key == u"c")
            desktop.release({key});
        ours.postCopyKey(false);
        for (const KeyCode typed : {KeyCode::d, KeyCode::c}) {
            const auto canBeTyped = [&] {
                ours.connection->dispatchPending();
                return isFree(*other, typed);
            };
            EXPECT_TRUE(waitUntil(canBeTyped, 2)) << key.toStdString();
        }
    }

    ours.pressed.clear();
    ASSERT_EQ(ours.take({KeyCode::c, Modifier::control | Modifier::shift}), registered);
    ours.postCopyKey(true);
    ours.postCopyKey(false);
    EXPECT_FALSE(waitUntil([&] { return !ours.pressed.empty(); }, 1));
    desktop.press(u"ctrl+shift+c"_s);
    EXPECT_TRUE(ours.isPressed(1));
}

TEST_F(X11, of_two_keys_for_one_modifier_the_one_that_is_held_is_let_go) {
    OneProgram ours;
    const auto connection = X11Connection::open();
    xcb_connection_t* xcb = connection->xcb();
    constexpr xcb_keycode_t capsLock = 66;  // a lower key code than that of Super itself
    const xcb_keycode_t held = *x11KeyCode(KeyCode::leftCommand);
    const KeySymbols symbols{xcb_key_symbols_alloc(xcb)};
    const xcb_keysym_t super = xcb_key_symbols_get_keysym(symbols.get(), held, 0);
    xcb_change_keyboard_mapping(xcb, 1, capsLock, 1, &super);
    connection->sync();
    const auto isHeld = [&](xcb_keycode_t key) {
        const XcbPtr<xcb_query_keymap_reply_t> keys{
            xcb_query_keymap_reply(xcb, xcb_query_keymap(xcb), nullptr)};
        return (keys->keys[key / 8] >> (key % 8) & 1) != 0;
    };
    for (const xcb_keycode_t key : {held, capsLock})
        xcb_test_fake_input(xcb, XCB_KEY_PRESS, key, 0, XCB_NONE, 0, 0, 0);
    connection->sync();
    ASSERT_TRUE(isHeld(held) && isHeld(capsLock));
    ours.letGoOfModifiers();
    ours.connection->sync();
    for (const xcb_keycode_t key : {held, capsLock})
        EXPECT_FALSE(isHeld(key)) << int(key);
}

TEST_F(X11, keys_are_where_their_table_says_and_mean_there_what_it_says) {
    const auto connection = X11Connection::open();
    const KeySymbols symbols{xcb_key_symbols_alloc(connection->xcb())};
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
        // The server's keyboard lacks the keys that only Apple or Japanese keyboards have.
        if (key->keysym == 0 || meanings.front() == XCB_NO_SYMBOL || meanings.front() >= 0x10000000)
            continue;
        ++compared;
        EXPECT_THAT(meanings, Contains(key->keysym)) << "key " << code;
    }
    EXPECT_GT(compared, 90);
}

}  // namespace
}  // namespace tralio
