#include "platform/linux/wayland/data_control.h"

#include <csignal>

#include "common/text_limit.h"
#include "desktop/sway_desktop.h"
#include "platform/linux/atspi/atspi_bus.h"
#include "platform/linux/wayland/front_application.h"
#include "platform/linux/wayland/toplevel_watch.h"
#include "platform/linux/wayland/wayland_pasteboard.h"
#include "platform/linux/wayland/wayland_workspace.h"
#include "support/testing.h"

namespace tralio {
namespace {

using enum DataControl::Selection;

struct DataControlTest : testing::Test {
    /// Starts a program that owns a text until it is ended; returns once we know of its text.
    QProcess& own(const QString& text, const QStringList& arguments = {}) {
        const auto selection = arguments.contains(u"--primary"_s) ? primary : clipboard;
        const qint64 before = dataControl->changeCount(selection);
        QProcess& owner = desktop.start(u"wl-copy"_s, QStringList{u"--foreground"_s} + arguments);
        owner.write(text.toUtf8());
        owner.closeWriteChannel();
        EXPECT_TRUE(waitUntil([&] { return dataControl->changeCount(selection) > before; }));
        return owner;
    }
    [[nodiscard]] std::optional<QString> textOf(DataControl::Selection selection, int limit = 500) {
        return dataControl->text(selection, QDeadlineTimer(limit));
    }

    /// The bytes of the picture on the clipboard.
    static std::optional<QByteArray> pictureOf(WaylandPasteboard& pasteboard) {
        const Picture picture = QCoro::waitFor(pasteboard.picture());
        return picture ? std::optional(contentOf(picture->path())) : std::nullopt;
    }

    SwayDesktop desktop{SwayDesktop::Xwayland::absent};
    std::unique_ptr<WaylandConnection> connection = WaylandConnection::open();
    std::unique_ptr<DataControl> dataControl = DataControl::open(*connection);
};

TEST_F(DataControlTest, every_change_counts_and_texts_of_any_length_are_read_but_not_of_a_hung_owner) {
    EXPECT_EQ(textOf(clipboard), std::nullopt);
    const QString odd = u"x\u0302 🙂 \u202e\ufeff Ấ"_s;
    for (const QString& text : {odd, odd, QString(longestText, u'ế')}) {
        own(text);
        EXPECT_EQ(textOf(clipboard, 2000), text);
    }
    own(QString(3'000'000, u'ế'));
    EXPECT_EQ(textOf(clipboard, 2000).value_or(QString()).size(), longestText + 1);
    EXPECT_EQ(dataControl->changeCount(primary), 0);
    own(u"đã bôi đen"_s, {u"--primary"_s});
    EXPECT_EQ(dataControl->changeCount(primary), 1);
    EXPECT_EQ(textOf(primary), u"đã bôi đen");

    const QProcess& owner = own(u"never given"_s);
    kill(static_cast<pid_t>(owner.processId()), SIGSTOP);
    const Stopwatch time;
    EXPECT_EQ(textOf(clipboard, 200), std::nullopt);
    EXPECT_LT(time.elapsed(), 1000);
    kill(static_cast<pid_t>(owner.processId()), SIGCONT);
}

TEST_F(DataControlTest, what_an_owner_gave_before_it_died_is_no_text) {
    // The owner reads and serves its text by this command.
    writeFile(desktop.home() + u"/bin/cat"_s,
        "#!/bin/sh\n[ -p /dev/stdout ] || exec /bin/cat \"$@\"\n"
        "printf '%65536s' text\n[ ! -e \"$DYING\" ] || "
        "{ rm \"$DYING\"; kill -KILL $PPID; sleep 0.3; }\n");
    const QString dying = desktop.write(u"dying"_s, {});
    desktop.setVariable(u"DYING"_s, dying);
    desktop.setVariable(u"PATH"_s, desktop.home() + u"/bin:"_s + desktop.environment().value(u"PATH"_s));
    own(u"text"_s);
    EXPECT_EQ(textOf(clipboard, 5000), std::nullopt);
    EXPECT_FALSE(QFile::exists(dying)) << "it has not died: what is tested?";
    own(u"text"_s);
    EXPECT_EQ(textOf(clipboard, 5000).value_or(QString()).size(), 65536);
}

TEST_F(DataControlTest, pictures_and_the_mark_of_a_password_are_seen) {
    WaylandPasteboard pasteboard(*dataControl);
    QImage picture(30, 20, QImage::Format_RGB32);
    picture.fill(Qt::red);
    const QString path = desktop.home() + u"/picture.png"_s;
    ASSERT_TRUE(picture.save(path));
    desktop.run(u"sh"_s, {u"-c"_s, u"wl-copy --type image/png < "_s + path});
    ASSERT_TRUE(waitUntil([&] { return pasteboard.changeCount() == 1; }));
    EXPECT_EQ(pictureOf(pasteboard), contentOf(path));
    EXPECT_EQ(pasteboard.string(), std::nullopt);
    EXPECT_EQ(pasteboard.isConcealed(), false);

    own(u"secret"_s, {u"--type"_s, QLatin1String(concealedMimeType)});
    EXPECT_EQ(pasteboard.changeCount(), 2);
    EXPECT_EQ(pasteboard.isConcealed(), true);
    EXPECT_EQ(pictureOf(pasteboard), std::nullopt);
}

TEST_F(DataControlTest, what_we_copy_others_paste_until_they_copy_themselves) {
    const QString text = u"của chúng ta "_s.repeated(20'000);
    dataControl->setClipboard(text);
    EXPECT_EQ(textOf(clipboard), text);
    QProcess& paste = desktop.start(u"wl-paste"_s, {u"-n"_s});
    ASSERT_TRUE(waitUntil([&] { return paste.state() == QProcess::NotRunning; }));
    EXPECT_EQ(QString::fromUtf8(paste.readAllStandardOutput()), text);

    own(u"another's"_s);
    ASSERT_TRUE(waitUntil([&] { return !dataControl->ownsClipboard(); }));
    EXPECT_EQ(textOf(clipboard), u"another's");
}

TEST(WaylandFront, of_an_empty_workspace_is_no_application) {
    SwayDesktop desktop(SwayDesktop::Xwayland::absent);
    const auto connection = WaylandConnection::open();
    const auto toplevels = ToplevelWatch::open(*connection);
    const AtspiBus accessibility;
    const FrontApplication front(toplevels.get(), accessibility);
    WaylandWorkspace workspace(front, accessibility);
    ASSERT_TRUE(connection->sync(QDeadlineTimer(5000)));
    EXPECT_FALSE(workspace.frontmostApplication());
    desktop.start(u"foot"_s, {u"sleep"_s, u"1000"_s});
    EXPECT_TRUE(waitUntil([&] { return workspace.frontmostApplication().has_value(); }));
    desktop.run(u"swaymsg"_s, {u"workspace"_s, u"another"_s});
    EXPECT_TRUE(waitUntil([&] { return !workspace.frontmostApplication(); }));
}

}  // namespace
}  // namespace tralio
