#include "desktop/fixtures.h"

namespace tralio {
namespace {

/// Vietnamese, an emoji outside the basic plane, and a base letter with an accent that have no precomposed
/// form.
const QString sentence = u"Giá trị x\u0302 của cà phê sữa đá 🙂 rất tốt, thưa bạn."_s;
const QString reply = u"The value of x\u0302 is fine. Ấ Ẩ Ễ Ố Ộ Ặ"_s;
const QString copied = u"vẫn còn đây"_s;

struct Selection : OnDesktop {
    Selection() { program.standIn().translatesTo(reply); }

    /// Expects that the selection reaches the model unchanged, and that the popover opens and shows the
    /// translation, as reported by accessibility.
    void expectTranslated() {
        EXPECT_EQ(program.translateSelection(), sentence);
        if (isAccessible)
            EXPECT_TRUE(waitUntil([this] { return program.shownTranslation() == reply; }))
                << "shown: " << program.shownTranslation().toStdString();
        EXPECT_TRUE(program.comesToFront());
    }

    /// Selects the sentence with the mouse: a paragraph at this place of this window. Returns whether it is
    /// selected.
    [[nodiscard]] bool marks(const QString& window, const QPoint& place) {
        // Clicks that are still in the queue would change the selection.
        return waitUntil([&] {
            desktop.click(window, place, 3);
            return waitUntil([this] { return desktop.primary() == sentence; }, 2);
        });
    }

    bool isAccessible = true;
};

TEST_F(Selection, of_editors_and_of_a_terminal_is_translated_and_the_clipboard_stays) {
    desktop.setClipboard(copied);
    const QString path = desktop.write(u"a.txt"_s, sentence);
    const auto selectInGtk = [this] { return desktop.selectInEditor(sentence); };
    const auto selectInQt = [&] {
        const QString editor =
            desktop.startInFront(u"featherpad"_s, u"featherpad"_s, {u"--standalone"_s, path});
        EXPECT_TRUE(waitUntil([&] {
            return desktop.xdotool(u"getwindowname "_s + editor).contains(u"a.txt");
        })) << "not read yet";
        desktop.press(u"ctrl+a"_s);
        return editor;
    };
    const auto selectInTerminal = [&] {
        const QString terminal = desktop.startTerminal(u"cat '%1'; sleep 1000"_s.arg(path));
        EXPECT_TRUE(marks(terminal, {60, 10}));
        return terminal;
    };
    const auto expectTranslatedIn = [this](const QString& window) {
        expectTranslated();
        EXPECT_TRUE(program.closePopover());
        EXPECT_EQ(desktop.clipboard(), copied);
        desktop.xdotool(u"windowkill "_s + window);
    };
    expectTranslatedIn(selectInGtk());
    expectTranslatedIn(selectInQt());
    expectTranslatedIn(selectInTerminal());

    // Without accessibility the text comes from PRIMARY.
    desktop.setAccessibility(false);
    isAccessible = false;
    expectTranslatedIn(selectInGtk());
    expectTranslatedIn(selectInTerminal());
}

TEST_F(Selection, of_another_application_is_none_of_a_terminals_which_is_not_interrupted_either) {
    desktop.selectInEditor(sentence);
    // Terminals recognised by their class, by the window's instance and its program, and by the
    // pseudo-terminal that they serve.
    const QString unknown = desktop.home() + u"/scratchpad"_s;
    const QString interrupted = desktop.home() + u"/interrupted"_s;
    ASSERT_TRUE(QFile::copy(QStandardPaths::findExecutable(u"xterm"_s), unknown));
    for (const auto& [terminal, windowClass] :
        {std::pair(u"xterm"_s, u"XTerm"_s), {u"xterm"_s, u"Scratchpad"_s}, {unknown, u"Scratchpad"_s}}) {
        const QString window = desktop.startInFront(windowClass, terminal,
            {u"-class"_s, windowClass, u"-e"_s, u"sh"_s, u"-c"_s,
                u"trap \"touch '%1'\" INT; while true; do sleep 1; done"_s.arg(interrupted)});
        EXPECT_TRUE(program.translatesNothing());
        EXPECT_FALSE(QFile::exists(interrupted));
        ASSERT_EQ(desktop.bringToFront(windowClass), window);
        desktop.press(u"ctrl+c"_s);
        EXPECT_TRUE(waitUntil([&] { return QFile::remove(interrupted); })) << "what is tested?";
        desktop.xdotool(u"windowkill "_s + window);
    }
}

TEST_F(Selection, that_nothing_tells_is_copied_by_the_menu_or_by_keys_also_while_the_hot_key_is_held) {
    desktop.startProbe({sentence, u"--menu"_s});
    expectTranslated();
    EXPECT_EQ(desktop.clipboard(), sentence);
    ASSERT_TRUE(program.closePopover());

    desktop.xdotool(u"search --class selection-probe windowkill"_s);
    desktop.setClipboard(copied);
    desktop.startSilentProbe(sentence);
    expectTranslated();
    EXPECT_EQ(desktop.clipboard(), sentence);

    desktop.setClipboard(copied);
    ASSERT_TRUE(program.closePopover());
    const qsizetype before = program.standIn().requests().size();
    desktop.hold({u"super"_s, u"shift"_s, u"d"_s});
    EXPECT_TRUE(waitUntil([&] { return program.standIn().requests().size() > before; }));
    desktop.release({u"d"_s, u"shift"_s, u"super"_s});
    EXPECT_TRUE(program.isAsked(sentence));

    ASSERT_TRUE(program.closePopover());
    desktop.setClipboard(copied);
    desktop.run(u"setxkbmap"_s, {u"us"_s, u"-option"_s, u"ctrl:swapcaps"_s});
    expectTranslated();
    EXPECT_EQ(desktop.clipboard(), sentence) << "by the key that means Control";
}

TEST_F(Selection, is_translated_whatever_becomes_of_the_keyboard_and_of_the_window_manager) {
    const QString editor = desktop.selectInEditor(sentence);
    const std::function<void()> changes[] = {
        [this] { desktop.press(u"Caps_Lock"_s); },
        [this] { desktop.press(u"Num_Lock"_s); },
        // Super moves to another modifier, of which the old grab does not know.
        [this] {
            desktop.run(u"xmodmap"_s,
                {u"-e"_s, u"clear mod4"_s, u"-e"_s, u"clear mod3"_s, u"-e"_s, u"add mod3 = Super_L"_s});
        },
    };
    for (const auto& change : changes) {
        SCOPED_TRACE(&change - changes);
        change();
        desktop.awaitTurnOfProgram();
        ASSERT_FALSE(desktop.bringToFront(u"Mousepad"_s).isEmpty());
        ASSERT_TRUE(desktop.selectsAll(sentence));
        expectTranslated();
    }
    ASSERT_TRUE(program.closePopover());
    desktop.killWindowManager();
    desktop.xdotool(u"windowfocus --sync "_s + editor);
    EXPECT_EQ(program.translateSelection(), sentence);
}

/// A browser as it is by default, one that reports all elements of a page, and one that always does.
struct BrowserSelection : Selection, testing::WithParamInterface<std::string> {
    /// Starts the browser. Returns its window.
    QString startBrowser(const QString& page) {
        if (GetParam() == "firefox") {
            desktop.write(u"firefox/user.js"_s,
                u"user_pref('browser.aboutwelcome.enabled', false);"
                u"user_pref('browser.startup.homepage_override.mstone', 'ignore');"
                u"user_pref('datareporting.policy.dataSubmissionEnabled', false);"_s);
            return desktop.startInFront(u"firefox"_s, u"firefox-esr"_s,
                {u"--profile"_s, desktop.home() + u"/firefox"_s, u"--new-instance"_s, u"--kiosk"_s,
                    u"file://"_s + page});
        }
        QStringList options{u"--app=file://"_s + page};
        if (GetParam() == "chromium_with_its_whole_tree")
            options += u"--force-renderer-accessibility"_s;
        desktop.startChromium(options);
        return desktop.bringToFront(u"chromium"_s);
    }
};

TEST_P(BrowserSelection, is_what_is_marked_now_and_no_password_and_the_clipboard_stays) {
    desktop.setClipboard(copied);
    const QString window = startBrowser(desktop.write(u"a.html"_s,
        u"<meta charset=utf-8><body style='margin:0;font-size:24px'><p style='margin:0'>%1</p>"
        u"<input type=password value='hunter2' style='position:absolute;top:200px;left:0;height:30px'>"_s.arg(
            sentence)));
    ASSERT_FALSE(window.isEmpty());
    ASSERT_TRUE(marks(window, {300, 15}));
    EXPECT_EQ(program.translateSelection(), sentence);
    ASSERT_TRUE(program.closePopover());

    desktop.click(window, {600, 500});
    EXPECT_EQ(desktop.primary(), sentence) << "it is no longer left over: what is tested?";
    EXPECT_TRUE(program.translatesNothing());

    desktop.click(window, {50, 215});
    desktop.press(u"ctrl+a"_s);
    EXPECT_TRUE(program.translatesNothing());
    EXPECT_EQ(desktop.clipboard(), copied);

    ASSERT_TRUE(marks(window, {300, 15}));
    EXPECT_EQ(program.translateSelection(), sentence);
    EXPECT_EQ(desktop.clipboard(), copied);
    for (const StandInModel::Request& request : program.standIn().requests())
        EXPECT_EQ(request.userText(), sentence) << "and never the password, nor its bullets";
}

INSTANTIATE_TEST_SUITE_P(, BrowserSelection,
    testing::Values("chromium_as_it_is", "chromium_with_its_whole_tree", "firefox"),
    [](const auto& browser) { return browser.param; });

TEST_F(Selection, of_an_application_behind_a_bus_proxy_is_what_it_tells) {
    const QString socket = desktop.home() + u"/proxied"_s;
    desktop.start(u"xdg-dbus-proxy"_s, {desktop.accessibilityAddress(), socket});
    ASSERT_TRUE(waitUntil([&] { return QFile::exists(socket); }));
    QProcessEnvironment proxied = desktop.environment();
    proxied.insert(u"AT_SPI_BUS_ADDRESS"_s, u"unix:path="_s + socket);
    desktop.startIn(proxied, u"zenity"_s, {u"--entry"_s, u"--entry-text"_s, sentence});
    ASSERT_FALSE(desktop.bringToFront(u"zenity"_s).isEmpty());
    desktop.press(u"ctrl+a"_s);
    EXPECT_EQ(program.translateSelection(), sentence);
    ASSERT_TRUE(program.closePopover());

    // Only the element tells that the text is a password, behind a bus proxy as elsewhere.
    for (const auto& [title, environment] :
        {std::pair(u"proxied"_s, proxied), {u"usual"_s, desktop.environment()}}) {
        desktop.startIn(environment, u"zenity"_s, {u"--password"_s, u"--title"_s, title});
        ASSERT_TRUE(waitUntil([&] { return desktop.xdotool(u"getactivewindow getwindowname"_s) == title; }));
        desktop.type(u"hunter2"_s);
        desktop.press(u"ctrl+a"_s);
        EXPECT_TRUE(program.translatesNothing()) << title.toStdString();
    }
    desktop.setAccessibility(false);
    EXPECT_TRUE(program.translatesNothing());
}

TEST_F(Selection, leaves_a_greyed_copy_alone_whose_menu_would_keep_the_keyboard) {
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
        return program.closePopover() && text == sentence;
    };
    ASSERT_TRUE(waitUntil(translatesAll, 30)) << "its window comes before it takes keys";
    desktop.press(u"Right"_s);
    // It disables its menu item a little later.
    EXPECT_FALSE(waitUntil([this] { return program.isPopoverShown(); }, 4));
    EXPECT_TRUE(program.translatesNothing());
    EXPECT_TRUE(translatesAll()) << "the menu has the keyboard";
}

}  // namespace
}  // namespace tralio
