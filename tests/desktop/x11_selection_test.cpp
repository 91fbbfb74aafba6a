#include <atomic>
#include <csignal>
#include <thread>

#include "common/text_limit.h"
#include "desktop/fixtures.h"
#include "platform/linux/x11/x11_pasteboard.h"
#include "platform/linux/x11/x11_primary_selection.h"

namespace tralio {
namespace {

struct X11Selection : X11 {
    /// Starts a program that owns the PRIMARY selection with this text.
    const QProcess& own(const QString& text) {
        return desktop.start(
            u"xclip"_s, {u"-quiet"_s, u"-selection"_s, u"primary"_s, desktop.write(u"primary.txt"_s, text)});
    }
    std::optional<PrimaryText> markOf(const QProcess& process) {
        return primary.textOf(static_cast<qint32>(process.processId()), QDeadlineTimer(500));
    }

    std::unique_ptr<X11Connection> connection = X11Connection::open();
    X11RawInput rawInput{*connection};
    bool canAsk = true;
    X11PrimarySelection primary{*connection, rawInput,
        {[](quint8 keyCode, quint16 held) { return keyCode == 75 && (held & XCB_MOD_MASK_CONTROL); },
            [this] { return canAsk; }}};  // F9
    X11Pasteboard pasteboard{*connection};
};

TEST_F(X11Selection, the_clipboard_counts_changes_and_gives_texts_of_any_length_but_not_of_a_hung_owner) {
    EXPECT_EQ(pasteboard.string(), std::nullopt);
    EXPECT_EQ(pasteboard.isConcealed(), false);

    const QString odd = u"x\u0302 🙂 \u202e\ufeff Ấ"_s;
    qint64 last = pasteboard.changeCount();
    for (const QString& text : {odd, odd, QString(longestText, u'ế')}) {
        desktop.setClipboard(text);
        EXPECT_TRUE(waitUntil([&] { return pasteboard.changeCount() > last; }));
        last = pasteboard.changeCount();
        EXPECT_EQ(pasteboard.string(), text);
    }
    EXPECT_EQ(pasteboard.changeCount(), last);

    QProcess& owner = desktop.start(QStringLiteral(SELECTION_PROBE), {u"a picture"_s, u"--picture"_s});
    ASSERT_TRUE(waitUntil([&] { return pasteboard.changeCount() > last; }));
    EXPECT_EQ(pasteboard.string(), std::nullopt);
    const Picture picture = QCoro::waitFor(pasteboard.picture());
    ASSERT_TRUE(picture) << "but its picture is there";
    EXPECT_TRUE(QImage().loadFromData(contentOf(picture->path()), "PNG"));

    kill(static_cast<pid_t>(owner.processId()), SIGSTOP);
    const Stopwatch time;
    EXPECT_EQ(pasteboard.string(), std::nullopt);
    EXPECT_LT(time.elapsed(), 1000);
    EXPECT_EQ(pasteboard.isConcealed(), std::nullopt);
    kill(static_cast<pid_t>(owner.processId()), SIGCONT);

    last = pasteboard.changeCount();
    desktop.start(u"xclip"_s,
        {u"-quiet"_s, u"-selection"_s, u"clipboard"_s, u"-t"_s, u"image/gif"_s,
            desktop.write(u"a.gif"_s, u"GIF89a"_s)});
    ASSERT_TRUE(waitUntil([&] { return pasteboard.changeCount() > last; }));
    const Picture other = QCoro::waitFor(pasteboard.picture());
    ASSERT_TRUE(other) << "of a format that has no place among the usual ones";
    EXPECT_EQ(contentOf(other->path()), "GIF89a");
}

/// Owns the clipboard on a thread of its own, with a text that never ends. Before each answer it sends one to
/// an earlier request, as a slow owner does.
class EndlessOwner final {
public:
    static constexpr int pieceSize = 50'000;

    EndlessOwner() {
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
        if (request.target == m_connection->atom("TARGETS")) {
            put(XCB_ATOM_ATOM, 32, 1, &m_text);
            m_requestor = XCB_NONE;
        } else {
            put(m_connection->atom("INCR"), 32, 1, &pieceSize);
        }
        xcb_selection_notify_event_t notify{};
        notify.response_type = XCB_SELECTION_NOTIFY;
        notify.requestor = request.requestor;
        notify.selection = request.selection;
        notify.target = XCB_ATOM_STRING;
        const char* bytes = reinterpret_cast<const char*>(&notify);
        xcb_send_event(m_connection->xcb(), 0, request.requestor, 0, bytes);
        notify.target = request.target;
        notify.property = request.property;
        xcb_send_event(m_connection->xcb(), 0, request.requestor, 0, bytes);
        xcb_flush(m_connection->xcb());
    }
    void put(xcb_atom_t type, quint8 format, quint32 count, const void* data) {
        xcb_change_property(
            m_connection->xcb(), XCB_PROP_MODE_REPLACE, m_requestor, m_property, type, format, count, data);
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

TEST_F(X11Selection, of_a_text_that_is_too_long_no_more_is_read_than_a_text_may_have) {
    const EndlessOwner owner;
    const QString text = pasteboard.string().value_or(QString());
    EXPECT_TRUE(isTooLong(text)) << text.size();
    EXPECT_LE(text.size(), longestText + 1);
    EXPECT_LE(owner.pieces(), longestTextBytes / EndlessOwner::pieceSize + 2);
}

TEST_F(X11Selection, a_mark_may_be_gone_once_its_own_application_was_pressed) {
    connection->sync();
    const QProcess& terminal = desktop.start(u"xterm"_s,
        {u"-geometry"_s, u"40x10+0+0"_s, u"-e"_s, u"sh"_s, u"-c"_s, u"echo marked here; sleep 60"_s});
    const auto mark = [&] { return markOf(terminal); };
    const QString window = desktop.bringToFront(u"xterm"_s);
    ASSERT_TRUE(waitUntil([&] {
        desktop.click(window, {60, 10}, 3);
        return waitUntil([&] { return mark() && mark()->text.startsWith(u"marked here"); }, 2);
    }));
    EXPECT_FALSE(mark()->mayBeGone);

    // The wheel and other buttons do not count, nor do presses in another window or on the bare screen.
    desktop.xdotool(u"click 4 click 3"_s);
    desktop.click(desktop.startProbe({u"text"_s}), {10, 10});
    desktop.click({1270, 1010});
    EXPECT_FALSE(waitUntil([&] { return mark()->mayBeGone; }, 1));

    const auto staysAfter = [&](const QString& keys) {
        desktop.xdotool(u"key "_s + keys);
        return !waitUntil([&] { return mark()->mayBeGone; }, 1);
    };
    EXPECT_TRUE(staysAfter(u"Right"_s)) << "in that other window";
    const QString marked = desktop.bringToFront(u"xterm"_s);
    desktop.click(marked, {60, 60});
    EXPECT_TRUE(waitUntil([&] { return mark()->mayBeGone; }));

    // Modifiers and the key of a hot key do not count, nor does any key where the application cannot be
    // asked.
    const auto markAnew = [&] {
        return waitUntil([&] {
            desktop.click(marked, {60, 10}, 3);
            return waitUntil([&] { return !mark()->mayBeGone; }, 2);
        });
    };
    ASSERT_TRUE(markAnew());
    for (const auto& [held, key] : {std::pair(u"ctrl"_s, u"F9"_s), std::pair(u"super"_s, u"9"_s)}) {
        desktop.hold({held});
        EXPECT_TRUE(staysAfter(key)) << held.toStdString();
        desktop.release({held});
    }
    EXPECT_FALSE(staysAfter(u"F9"_s));
    canAsk = false;
    ASSERT_TRUE(markAnew());
    EXPECT_TRUE(staysAfter(u"Right"_s));
}

TEST_F(X11Selection, a_word_that_was_clicked_twice_is_no_password_by_a_command_key_that_is_down_already) {
    const auto markOwner = [&] {
        const XcbPtr<xcb_get_selection_owner_reply_t> selection{xcb_get_selection_owner_reply(
            connection->xcb(), xcb_get_selection_owner(connection->xcb(), XCB_ATOM_PRIMARY), nullptr)};
        return selection->owner;
    };
    const auto mayBePassword = [&](const QString& held) {
        desktop.hold({held});
        desktop.xdotool(u"click --repeat 2 --delay 40 1"_s);
        const QProcess& owner = own(u"hunter"_s);
        std::optional<PrimaryText> mark;
        EXPECT_TRUE(waitUntil([&] {
            // The owner is recognised by its window's name, which only the new owner has.
            const xcb_window_t named = markOwner();
            xcb_change_property(connection->xcb(), XCB_PROP_MODE_REPLACE, named, XCB_ATOM_WM_NAME,
                XCB_ATOM_STRING, 8, 18, "Chromium clipboard");
            mark = markOf(owner);
            return mark.has_value() && markOwner() == named;
        }));
        desktop.release({held});
        return mark && mark->mayBePassword;
    };
    EXPECT_FALSE(mayBePassword(u"super"_s));
    EXPECT_TRUE(mayBePassword(u"ctrl"_s)) << "which marks all";
}

}  // namespace
}  // namespace tralio
