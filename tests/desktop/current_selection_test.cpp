#include <QFile>
#include <QStandardPaths>

#include <algorithm>
#include <array>

#include "desktop/program_run.h"
#include "desktop/virtual_desktop.h"
#include "support/testing.h"

namespace tralio {
namespace {

const QString sentence = u"Giá trị của cà phê sữa đá 🙂 rất tốt, thưa bạn."_s;

/// What the user means, told from what real applications keep after a mark has gone.
class CurrentSelection : public testing::Test {
protected:
    [[nodiscard]] bool sent(const QString& text) {
        const auto& requests = program.standIn().requests();
        return std::any_of(requests.begin(), requests.end(),
            [&](const auto& request) { return request.userText().contains(text); });
    }
    void startBrowser(const QStringList& options, const QString& page) {
        if (options.value(0) == u"firefox-esr") {
            const QString profile = desktop.home() + u"/firefox"_s;
            desktop.write(u"firefox/user.js"_s,
                u"user_pref('browser.aboutwelcome.enabled', false);"
                u"user_pref('browser.startup.homepage_override.mstone', 'ignore');"
                u"user_pref('datareporting.policy.dataSubmissionEnabled', false);"_s);
            desktop.start(options.value(0),
                {u"--profile"_s, profile, u"--new-instance"_s, u"--kiosk"_s, u"file://"_s + page});
            return;
        }
        desktop.start(u"chromium"_s,
            QStringList{u"--no-sandbox"_s, u"--test-type"_s, u"--disable-gpu"_s, u"--no-first-run"_s,
                u"--disable-background-networking"_s, u"--disable-component-update"_s, u"--disable-sync"_s,
                u"--user-data-dir="_s + desktop.home() + u"/chromium"_s, u"--app=file://"_s + page} +
                options);
    }

    VirtualDesktop desktop;
    ProgramRun program{desktop};
};

/// A browser as it is, one that tells of every element of a page, and one that always does.
class BrowserSelection : public CurrentSelection, public testing::WithParamInterface<QStringList> {};

TEST_P(BrowserSelection, is_what_is_marked_now_and_no_password_and_the_clipboard_stays) {
    desktop.setClipboard(u"vẫn còn đây"_s);
    startBrowser(GetParam(),
        desktop.write(u"a.html"_s,
            u"<meta charset=utf-8><body style='margin:0;font-size:24px'><p style='margin:0'>%1</p>"
            u"<input type=password value='hunter2' style='position:absolute;top:200px;left:0;height:30px'>"_s
                .arg(sentence)));
    const QString window =
        desktop.bringToFront(GetParam().value(0) == u"firefox-esr" ? u"firefox"_s : u"chromium"_s);
    ASSERT_FALSE(window.isEmpty());
    const auto mark = [&] {
        // Clicks that are still on their way would mark something else again.
        return waitUntil([&] {
            desktop.click(window, {300, 15}, 3);
            return waitUntil([&] { return desktop.primary() == sentence; }, 2);
        });
    };
    ASSERT_TRUE(mark());
    EXPECT_EQ(program.translateSelection(), sentence);
    EXPECT_TRUE(waitUntil([this] { return program.isPopoverInFront(); }));
    ASSERT_TRUE(program.closePopover());

    desktop.click(window, {600, 500}, 1);
    EXPECT_EQ(desktop.primary(), sentence) << "it is no longer left over: what is tested?";
    EXPECT_TRUE(program.translatesNothing());

    desktop.click(window, {50, 215}, 1);
    desktop.press(u"ctrl+a"_s);
    EXPECT_TRUE(program.translatesNothing());
    EXPECT_FALSE(sent(u"hunter2"_s));
    EXPECT_FALSE(sent(u"•"_s));
    EXPECT_EQ(desktop.clipboard(), u"vẫn còn đây"_s);

    ASSERT_TRUE(mark());
    EXPECT_EQ(program.translateSelection(), sentence);
    EXPECT_EQ(desktop.clipboard(), u"vẫn còn đây"_s);
}

constexpr std::array browserNames{"chromium_as_it_is", "chromium_with_its_whole_tree", "firefox"};

INSTANTIATE_TEST_SUITE_P(, BrowserSelection,
    testing::Values(
        QStringList(), QStringList{u"--force-renderer-accessibility"_s}, QStringList{u"firefox-esr"_s}),
    [](const auto& info) { return browserNames.at(info.index); });

TEST_F(CurrentSelection, of_a_gtk_password_field_is_nothing) {
    desktop.start(u"zenity"_s, {u"--password"_s});
    ASSERT_FALSE(desktop.bringToFront(u"zenity"_s).isEmpty());
    desktop.type(u"hunter2"_s);
    desktop.press(u"ctrl+a"_s);
    EXPECT_TRUE(program.translatesNothing());
    desktop.setAccessibility(false);
    EXPECT_TRUE(program.translatesNothing());
}

TEST_F(CurrentSelection, needs_no_accessibility_where_primary_tells_it) {
    desktop.setClipboard(u"vẫn còn đây"_s);
    desktop.setAccessibility(false);
    ASSERT_FALSE(desktop.selectInEditor(sentence).isEmpty());
    EXPECT_EQ(program.translateSelection(), sentence);
    EXPECT_TRUE(waitUntil([this] { return program.isPopoverInFront(); }));
    ASSERT_TRUE(program.closePopover());

    const QString line = u"dòng thứ nhất"_s;
    desktop.start(u"xterm"_s,
        {u"-u8"_s, u"-fa"_s, u"Noto Sans Mono"_s, u"-e"_s, u"sh"_s, u"-c"_s,
            u"echo '%1'; sleep 60"_s.arg(line)});
    const QString window = desktop.bringToFront(u"xterm"_s);
    ASSERT_FALSE(window.isEmpty());
    ASSERT_TRUE(waitUntil([&] {
        desktop.click(window, {60, 10}, 3);
        return waitUntil([&] { return desktop.primary() == line; }, 2);
    }));
    EXPECT_EQ(program.translateSelection(), line);
    EXPECT_EQ(desktop.clipboard(), u"vẫn còn đây"_s);
}

TEST_F(CurrentSelection, is_never_asked_of_an_unknown_terminal_by_an_interrupt) {
    // One that is known by its window's instance and its program, and one by the terminal that it serves.
    const QString unknown = desktop.home() + u"/scratchpad"_s;
    ASSERT_TRUE(QFile::copy(QStandardPaths::findExecutable(u"xterm"_s), unknown));
    for (const QString& terminalProgram : {u"xterm"_s, unknown}) {
        QProcess& terminal = desktop.start(terminalProgram,
            {u"-class"_s, u"Scratchpad"_s, u"-e"_s, u"sh"_s, u"-c"_s,
                u"trap \"touch '%1/interrupted'\" INT; while true; do sleep 1; done"_s.arg(desktop.home())});
        ASSERT_FALSE(desktop.bringToFront(u"Scratchpad"_s).isEmpty());
        EXPECT_TRUE(program.translatesNothing());
        EXPECT_FALSE(QFile::exists(desktop.home() + u"/interrupted"_s));
        terminal.kill();
        terminal.waitForFinished();
    }
}

TEST_F(CurrentSelection, of_an_application_behind_a_bus_proxy_is_what_it_tells) {
    const QString address =
        desktop.callOnBus(u"org.a11y.Bus"_s, u"/org/a11y/bus"_s, u"org.a11y.Bus.GetAddress"_s)
            .section(u'\'', 1, 1);
    const QString socket = desktop.home() + u"/proxied"_s;
    desktop.start(u"xdg-dbus-proxy"_s, {address, socket});
    ASSERT_TRUE(waitUntil([&] { return QFile::exists(socket); }));
    QProcessEnvironment proxied = desktop.environment();
    proxied.insert(u"AT_SPI_BUS_ADDRESS"_s, u"unix:path="_s + socket);
    desktop.startIn(
        proxied, u"zenity"_s, {u"--entry"_s, u"--title"_s, u"Trong hộp cát"_s, u"--entry-text"_s, sentence});
    ASSERT_FALSE(desktop.bringToFront(u"zenity"_s).isEmpty());
    desktop.press(u"ctrl+a"_s);
    EXPECT_EQ(program.translateSelection(), sentence);
    ASSERT_TRUE(waitUntil([this] { return program.isPopoverInFront(); }));
    ASSERT_TRUE(program.closePopover());

    // Only its element tells that this one is a password.
    desktop.startIn(proxied, u"zenity"_s, {u"--password"_s, u"--title"_s, u"Mật khẩu"_s});
    ASSERT_TRUE(waitUntil([this] {
        return desktop.run(u"xdotool"_s, {u"getactivewindow"_s, u"getwindowname"_s}) == u"Mật khẩu";
    }));
    desktop.type(u"hunter2"_s);
    desktop.press(u"ctrl+a"_s);
    EXPECT_TRUE(program.translatesNothing());
}

TEST_F(CurrentSelection, leaves_a_greyed_copy_alone_whose_menu_would_keep_the_keyboard) {
    desktop.setVariable(u"SAL_USE_VCLPLUGIN"_s, u"gtk3"_s);
    desktop.start(u"soffice"_s,
        {u"--writer"_s, u"--norestore"_s, u"--nologo"_s,
            u"-env:UserInstallation=file://"_s + desktop.home() + u"/office"_s,
            desktop.write(u"a.html"_s, u"<meta charset=utf-8>"_s + sentence)});
    ASSERT_TRUE(waitUntil([this] { return desktop.isVisible(u"libreoffice"_s); }, 60))
        << "it takes its time when it was never started before";
    ASSERT_FALSE(desktop.bringToFront(u"libreoffice"_s).isEmpty());
    const auto translatesAll = [&] {
        desktop.press(u"ctrl+a"_s);
        const QString text = program.translateSelection();
        return waitUntil([this] { return program.isPopoverInFront(); }) && program.closePopover() &&
            text == sentence;
    };
    ASSERT_TRUE(waitUntil(translatesAll, 30)) << "its window comes before it takes keys";
    desktop.press(u"Right"_s);
    // It greys its menu a little later.
    EXPECT_FALSE(waitUntil([this] { return program.isPopoverShown(); }, 4));
    EXPECT_TRUE(program.translatesNothing());
    EXPECT_TRUE(translatesAll()) << "the menu has the keyboard";
}

}  // namespace
}  // namespace tralio
