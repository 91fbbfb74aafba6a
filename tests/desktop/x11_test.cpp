#include <QElapsedTimer>

#include <atomic>
#include <csignal>
#include <gmock/gmock.h>
#include <thread>
#include <xcb/xcb_keysyms.h>

#include "common/text_limit.h"
#include "desktop/virtual_desktop.h"
#include "platform/linux/keyboard/key_codes.h"
#include "platform/linux/x11/x11_hot_keys.h"
#include "platform/linux/x11/x11_key_event_poster.h"
#include "platform/linux/x11/x11_pasteboard.h"
#include "platform/linux/x11/x11_primary_selection.h"
#include "support/files.h"
#include "support/print_to.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

constexpr KeyCode keyF5{96};
constexpr Modifiers commandShift = Modifier::command | Modifier::shift;
constexpr HotKeyID anyId{1, 1};

class X11 : public testing::Test {
protected:
    X11() { qputenv("DISPLAY", desktop.environment().value(u"DISPLAY"_s).toUtf8()); }

    /// A key that is held repeats soon and often.
    void repeatsFast() { desktop.run(u"xset"_s, {u"r"_s, u"rate"_s, u"100"_s, u"50"_s}); }

    VirtualDesktop desktop{VirtualDesktop::Tray::absent};
};

/// The hot keys of one program, on a connection of its own.
struct OneProgram {
    std::unique_ptr<X11Connection> connection = X11Connection::open();
    X11RawInput rawInput{*connection};
    X11HotKeys hotKeys{*connection, rawInput};
};

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

TEST_F(X11, the_clipboard_counts_every_change_and_gives_texts_of_any_length) {
    const auto connection = X11Connection::open();
    X11Pasteboard pasteboard(*connection);
    EXPECT_EQ(pasteboard.string(), std::nullopt);

    const QString odd = u"x\u0302 🙂 \u202e\ufeff Ấ"_s;
    qint64 last = pasteboard.changeCount();
    for (const QString& text : {odd, odd, QString(longestText, u'ế')}) {
        desktop.setClipboard(text);
        EXPECT_TRUE(waitUntil([&] { return pasteboard.changeCount() > last; }));
        last = pasteboard.changeCount();
        EXPECT_EQ(pasteboard.string(), text);
    }
    EXPECT_EQ(pasteboard.changeCount(), last);
}

/// Owns the clipboard from a thread of its own, with a text that never ends.
class EndlessOwner final {
public:
    static constexpr int pieceSize = 50'000;

    EndlessOwner() {
        const quint32 mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(m_connection->xcb(), m_connection->window(), XCB_CW_EVENT_MASK, &mask);
        xcb_set_selection_owner(
            m_connection->xcb(), m_connection->window(), m_connection->atom("CLIPBOARD"), XCB_CURRENT_TIME);
        m_connection->sync();
        m_thread = std::thread([this] { serve(); });
    }
    ~EndlessOwner() {
        m_ends = true;
        m_thread.join();
    }

    [[nodiscard]] int pieces() const { return m_pieces; }

private:
    void serve() {
        while (!m_ends) {
            const auto event = m_connection->waitFor([](const auto&) { return true; }, QDeadlineTimer(50));
            if (!event)
                continue;
            const int type = event->response_type & 0x7f;
            if (type == XCB_SELECTION_REQUEST)
                answer(reinterpret_cast<const xcb_selection_request_event_t&>(*event));
            const auto& deleted = reinterpret_cast<const xcb_property_notify_event_t&>(*event);
            if (type == XCB_PROPERTY_NOTIFY && deleted.state == XCB_PROPERTY_DELETE &&
                deleted.window == m_requestor && deleted.atom == m_property) {
                ++m_pieces;
                put(m_text, 8, pieceSize, QByteArray(pieceSize, 'x').constData());
            }
        }
    }
    void answer(const xcb_selection_request_event_t& request) {
        const quint32 mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(m_connection->xcb(), request.requestor, XCB_CW_EVENT_MASK, &mask);
        m_requestor = request.requestor;
        m_property = request.property;
        if (request.target == m_connection->atom("TARGETS"))
            put(XCB_ATOM_ATOM, 32, 1, &m_text);
        else
            put(m_connection->atom("INCR"), 32, 1, &pieceSize);
        if (request.target == m_connection->atom("TARGETS"))
            m_requestor = XCB_NONE;
        xcb_selection_notify_event_t notify{};
        notify.response_type = XCB_SELECTION_NOTIFY;
        notify.requestor = request.requestor;
        notify.selection = request.selection;
        notify.target = request.target;
        notify.property = request.property;
        xcb_send_event(m_connection->xcb(), 0, request.requestor, 0, reinterpret_cast<const char*>(&notify));
        xcb_flush(m_connection->xcb());
    }
    void put(xcb_atom_t type, quint8 format, quint32 count, const void* data) {
        const xcb_window_t window = m_requestor;
        xcb_change_property(
            m_connection->xcb(), XCB_PROP_MODE_REPLACE, window, m_property, type, format, count, data);
        xcb_flush(m_connection->xcb());
    }

    std::unique_ptr<X11Connection> m_connection = X11Connection::open();
    xcb_atom_t m_text = m_connection->atom("UTF8_STRING");
    xcb_window_t m_requestor = XCB_NONE;
    xcb_atom_t m_property = XCB_NONE;
    std::atomic<int> m_pieces = 0;
    std::atomic<bool> m_ends = false;
    std::thread m_thread;
};

TEST_F(X11, of_a_text_that_is_too_long_no_more_is_read_than_a_text_may_have) {
    const auto connection = X11Connection::open();
    X11Pasteboard pasteboard(*connection);
    const EndlessOwner owner;
    const QString text = pasteboard.string().value_or(QString());
    EXPECT_TRUE(isTooLong(text)) << text.size();
    EXPECT_LE(text.size(), longestText + 1);
    EXPECT_LE(owner.pieces(), longestTextBytes / EndlessOwner::pieceSize + 2);
}

TEST_F(X11, a_clipboard_without_text_or_with_a_hung_owner_has_no_text) {
    const auto connection = X11Connection::open();
    X11Pasteboard pasteboard(*connection);
    const qint64 before = pasteboard.changeCount();
    QProcess& owner = desktop.start(QStringLiteral(SELECTION_PROBE), {u"a picture"_s, u"--picture"_s});
    ASSERT_TRUE(waitUntil([&] { return pasteboard.changeCount() > before; }));
    EXPECT_EQ(pasteboard.string(), std::nullopt);
    const Picture picture = QCoro::waitFor(pasteboard.picture());
    ASSERT_TRUE(picture) << "but its picture is there";
    EXPECT_TRUE(QImage().loadFromData(contentOf(picture->path()), "PNG"));

    kill(static_cast<pid_t>(owner.processId()), SIGSTOP);
    QElapsedTimer time;
    time.start();
    EXPECT_EQ(pasteboard.string(), std::nullopt);
    EXPECT_LT(time.elapsed(), 1000);
    kill(static_cast<pid_t>(owner.processId()), SIGCONT);
}

TEST_F(X11, the_primary_selection_counts_only_for_the_process_that_owns_it) {
    const auto connection = X11Connection::open();
    X11RawInput rawInput(*connection);
    X11PrimarySelection primary(*connection, rawInput);
    const QString path = desktop.write(u"a.txt"_s, u"đã bôi đen"_s);
    const QProcess& owner = desktop.start(u"xclip"_s, {u"-quiet"_s, u"-selection"_s, u"primary"_s, path});
    const auto pid = static_cast<qint32>(owner.processId());
    const auto mark = [&](qint32 process) { return primary.textOf(process, QDeadlineTimer(500)); };
    EXPECT_TRUE(waitUntil([&] { return mark(pid).has_value(); }));
    EXPECT_EQ(mark(pid)->text, u"đã bôi đen"_s);
    EXPECT_EQ(mark(pid + 1), std::nullopt);

    // It may be gone once the mouse has been pressed; the wheel does not count.
    desktop.start(QStringLiteral(SELECTION_PROBE), {u"text"_s});
    const QString window = desktop.bringToFront(u"selection-probe"_s);
    desktop.run(u"xdotool"_s, {u"click"_s, u"4"_s, u"click"_s, u"3"_s});
    EXPECT_FALSE(mark(pid)->mayBeGone);
    desktop.click(window, {10, 10}, 1);
    EXPECT_TRUE(waitUntil([&] { return mark(pid)->mayBeGone; }));
    desktop.start(u"xclip"_s, {u"-quiet"_s, u"-selection"_s, u"primary"_s, path});
    EXPECT_TRUE(waitUntil([&] { return !mark(pid); }));
}

}  // namespace
}  // namespace tralio
