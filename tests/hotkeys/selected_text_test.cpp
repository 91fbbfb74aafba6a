#include "support/debug_log_file.h"
#include "support/fake_desktop.h"

namespace tralio {
namespace {

constexpr qint32 pid = 4711;
const auto keystroke = u"fetchSelectedText: executing Layer 4 (Keystroke Cmd+C)..."_s;
const auto exhausted = u"fetchSelectedText: ALL LAYERS EXHAUSTED, returning nil"_s;

struct SelectedText : testing::Test {
    SelectedText() { desktop.workspace.front = {pid, u"org.example.Editor"_s, u"Editor"_s}; }

    void fetch() {
        service.fetchSelectedText([this](const auto& text) { results.push_back(text); });
    }
    void giveCopyItem() {
        desktop.accessibility.bar = {.children = {{.children = {{.children = {{.title = u"Copy"_s}}}}}}};
    }
    /// Moves on until the synthetic shortcut has been pressed.
    void reachKeystroke() { desktop.clock.advance(200ms); }

    DebugLogFile log;
    FakeDesktop desktop;
    HotKeyService service{desktop.platform()};
    std::vector<std::optional<QString>> results;
};

TEST_F(SelectedText, no_application_or_this_one_in_front_yields_nothing_at_once) {
    desktop.workspace.front->processId = static_cast<qint32>(QCoreApplication::applicationPid());
    fetch();
    desktop.workspace.front.reset();
    fetch();
    EXPECT_THAT(results, ElementsAre(std::nullopt, std::nullopt));
    const QString told = u"fetchSelectedText: no valid frontmost app"_s;
    EXPECT_THAT(log.messages(), ElementsAre(told, told));
    EXPECT_THAT(desktop.accessibility.asked, IsEmpty());
}

TEST_F(SelectedText, is_what_the_first_layer_tells_that_has_one_and_the_clipboard_is_left_alone) {
    const QString editor = u"org.example.Editor"_s;
    const QString browser = u"com.google.Chrome"_s;
    const QString blank = u" \n"_s;
    const QString sentence =
        u"Tiếng Việt 👨‍👩‍👧‍👦 cà phê sữa đá, ba mươi ký tự"_s;
    const std::tuple<QString, FakeElement, QString, QString, QString> cases[] = {
        {editor, {.selectedText = u"\u00a0 "_s + sentence + u" \n\u2028"_s}, blank, sentence,
            u"Layer 1 (Direct AX) SUCCESS: 'Tiếng Việt 👨‍👩‍👧‍👦 cà phê sữa đá, ba'"_s},
        {editor, {.selectedText = blank, .documentText = u" trang web\n"_s}, blank, u"trang web"_s,
            u"Layer 1 (Direct AX) SUCCESS: 'trang web'"_s},
        {browser, {.selectedText = u"một đoạn"_s, .documentText = u"trang web"_s}, u"từ trang"_s,
            u"một đoạn"_s, u"Layer 1 (Direct AX) SUCCESS: 'một đoạn'"_s},
        {browser, {}, u" từ trang \n"_s, u"từ trang"_s,
            u"Layer 2 (Browser AppleScript) SUCCESS: 'từ trang'"_s},
        {editor, {}, u" đánh dấu\n"_s, u"đánh dấu"_s, u"Layer 2 (without a script) SUCCESS: 'đánh dấu'"_s},
    };
    desktop.workspace.front->localizedName.reset();
    for (const auto& [bundle, focused, otherwise, text, told] : cases) {
        desktop.workspace.front->bundleIdentifier = bundle;
        desktop.accessibility.focused = focused;
        desktop.scripts.result = bundle == browser ? otherwise : u"of no browser"_s;
        desktop.scripts.inFront = bundle == browser ? u"of a browser"_s : otherwise;
        fetch();
        EXPECT_EQ(results.back(), text);
        EXPECT_EQ(log.messages().last(), u"fetchSelectedText: "_s + told);
        EXPECT_EQ(service.getDirectAXSelectedText(pid) == text, told.startsWith(u"Layer 1"));
    }
    EXPECT_THAT(results, SizeIs(std::size(cases)));
    EXPECT_EQ(
        log.messages().first(), u"fetchSelectedText: frontApp='' (bundle: org.example.Editor, pid: 4711)"_s);
    EXPECT_THAT(desktop.scripts.executed, SizeIs(1));
    EXPECT_EQ(desktop.pasteboard.count, 7);
    EXPECT_EQ(desktop.clock.pending(), 0);

    desktop.accessibility.focused = {.selectedText = blank, .documentText = u"\t"_s};
    desktop.scripts.inFront = blank;
    fetch();
    EXPECT_EQ(log.messages().last(), keystroke);
    desktop.workspace.front->bundleIdentifier = browser;
    desktop.scripts.result = blank;
    giveCopyItem();
    fetch();
    EXPECT_EQ(log.messages().last(), u"fetchSelectedText: Layer 3 (Menu Copy Action) triggered..."_s);
    EXPECT_TRUE(HotKeyService::isBrowser(u"org.example.SearchTool"_s)) << "it is found anywhere";
    EXPECT_FALSE(HotKeyService::isBrowser(u"org.mozilla.firefox"_s));
}

TEST_F(SelectedText, of_a_password_is_taken_by_no_layer) {
    desktop.workspace.front->bundleIdentifier = u"com.google.Chrome"_s;
    desktop.accessibility.focused = {
        .holdsPassword = true, .selectedText = u"hunter2"_s, .documentText = u"hunter2"_s};
    desktop.scripts.result = u"hunter2"_s;
    desktop.scripts.inFront = u"hunter2"_s;
    giveCopyItem();
    fetch();
    EXPECT_THAT(results, ElementsAre(std::nullopt));
    EXPECT_EQ(service.getDirectAXSelectedText(pid), std::nullopt);
    EXPECT_EQ(desktop.clock.pending(), 0);
    EXPECT_THAT(desktop.accessibility.pressed, IsEmpty());
    EXPECT_EQ(log.messages().last(),
        u"fetchSelectedText: the focused element holds a password, which is left alone"_s);
    EXPECT_EQ(service.obstacle(), SelectedTextFetch::Obstacle::password);
    desktop.accessibility.focused->holdsPassword = false;
    fetch();
    EXPECT_EQ(service.obstacle(), SelectedTextFetch::Obstacle::none);
}

TEST_F(SelectedText, that_is_copied_as_a_password_ends_the_fetch_in_either_layer) {
    giveCopyItem();
    for (const bool byMenu : {true, false}) {
        results.clear();
        desktop.keyEvents.posted.clear();
        if (!byMenu)
            desktop.accessibility.bar.reset();
        fetch();
        if (!byMenu)
            reachKeystroke();
        desktop.pasteboard.concealed = true;
        desktop.pasteboard.copy(u"hunter2"_s);
        desktop.clock.advance(1s);
        EXPECT_THAT(results, ElementsAre(std::nullopt));
        EXPECT_EQ(desktop.keyEvents.posted.empty(), byMenu) << "no second copy";
        EXPECT_EQ(service.obstacle(), SelectedTextFetch::Obstacle::password);
        desktop.pasteboard.concealed = false;
    }
    // Whoever does not say whether it is one is asked once more.
    for (const int silences : {1, 2}) {
        results.clear();
        fetch();
        reachKeystroke();
        desktop.pasteboard.silences = silences;
        desktop.pasteboard.copy(u"copied"_s);
        desktop.clock.advance(1s);
        EXPECT_THAT(results, ElementsAre(silences == 1 ? std::optional(u"copied"_s) : std::nullopt));
        EXPECT_EQ(service.obstacle(),
            silences == 1 ? SelectedTextFetch::Obstacle::none : SelectedTextFetch::Obstacle::silentOwner);
    }
    EXPECT_FALSE(log.messages().join(u'\n').contains(u"hunter2"_s));
}

TEST_F(SelectedText, is_none_where_an_editor_copies_the_line_with_the_caret_instead) {
    using enum SelectedTextFetch::Obstacle;
    const std::tuple<QString, QString, std::optional<QString>, bool> cases[] = {
        {u"org.kde.kate"_s, u"line\n"_s, u"older"_s, false}, {u"Code"_s, u"line\n"_s, QString(), false},
        {u"jetbrains-idea"_s, u"line\n"_s, u"line"_s, true}, {u"Code"_s, u"word"_s, u"older"_s, true},
        {u"Code"_s, u"two\nlines\n"_s, u"older"_s, true}, {u"Code"_s, u"line\n"_s, std::nullopt, true},
        {u"org.example.Editor"_s, u"line\n"_s, u"older"_s, true}};
    for (const auto& [editor, copied, selected, isSelection] : cases) {
        desktop.workspace.front->bundleIdentifier = editor;
        desktop.pasteboard.selected = selected;
        for (const bool byMenu : {true, false}) {
            byMenu ? giveCopyItem() : desktop.accessibility.bar.reset();
            const size_t pressed = desktop.keyEvents.posted.size();
            fetch();
            if (!byMenu)
                reachKeystroke();
            desktop.pasteboard.copy(copied);
            desktop.clock.advance(30ms);
            const auto expected = isSelection ? std::optional(copied.trimmed()) : std::nullopt;
            EXPECT_EQ(results.back(), expected) << qPrintable(editor) << byMenu;
            EXPECT_EQ(service.obstacle() == lineOfCaret, !isSelection);
            EXPECT_EQ(desktop.keyEvents.posted.size() > pressed, !byMenu) << "copied once";
        }
    }
}

TEST_F(SelectedText, the_menu_copy_is_delivered_at_the_tick_that_sees_it_and_a_late_one_by_the_keystroke) {
    giveCopyItem();
    fetch();
    desktop.clock.advance(90ms);
    desktop.pasteboard.copy(u" chép \n"_s);
    desktop.clock.advance(29ms);
    EXPECT_THAT(results, IsEmpty());
    desktop.clock.advance(1ms);
    EXPECT_THAT(results, ElementsAre(u"chép"_s));
    EXPECT_EQ(log.messages().last(), u"fetchSelectedText: Layer 3 SUCCESS: 'chép'"_s);
    EXPECT_EQ(desktop.clock.pending(), 0);
    EXPECT_THAT(desktop.keyEvents.posted, IsEmpty());
    EXPECT_EQ(desktop.pasteboard.content, u" chép \n"_s);

    fetch();
    desktop.clock.advance(270ms);
    desktop.pasteboard.copy(u"trễ"_s);
    reachKeystroke();
    EXPECT_THAT(results, SizeIs(1));
    desktop.clock.advance(30ms);
    EXPECT_EQ(results.back(), u"trễ"_s) << "at its first tick";

    for (const std::optional<QString>& nothing : {std::optional<QString>(), std::optional(u" \n"_s)}) {
        fetch();
        desktop.pasteboard.copy(nothing);
        desktop.clock.advance(30ms);
        EXPECT_EQ(log.messages().last(), keystroke) << "a copy without text ends each wait";
        reachKeystroke();
        desktop.clock.advance(30ms);
        EXPECT_EQ(results.back(), std::nullopt);
    }

    desktop.accessibility.onPress = [this] { desktop.pasteboard.copy(u"ngay"_s); };
    fetch();
    desktop.clock.advance(30ms);
    EXPECT_EQ(results.back(), u"ngay"_s) << "a copy made while the item is pressed counts";
}

TEST_F(SelectedText, nine_ticks_end_the_menu_wait_then_the_shortcut_is_pressed_and_twelve_end_its_wait) {
    giveCopyItem();
    fetch();
    desktop.clock.advance(269ms);
    EXPECT_THAT(log.messages(), testing::Not(Contains(keystroke)));
    desktop.clock.advance(1ms);
    EXPECT_EQ(log.messages().last(), keystroke);

    desktop.clock.advance(149ms);
    EXPECT_THAT(desktop.keyEvents.posted, IsEmpty());
    desktop.clock.advance(1ms);
    std::vector<FakeKeyEventPoster::Posted> expected;
    for (const quint16 key : {58, 61, 55, 54, 56, 60, 59, 62})
        expected.emplace_back(0, KeyEvent{KeyCode{key}, false, {}});
    EXPECT_EQ(desktop.keyEvents.posted, expected) << "every modifier is released";
    desktop.clock.advance(49ms);
    EXPECT_EQ(desktop.keyEvents.posted, expected);
    desktop.clock.advance(1ms);
    for (const qint32 process : {pid, 0})
        for (const bool isDown : {true, false})
            expected.emplace_back(process, KeyEvent{KeyCode::c, isDown, Modifier::command});
    EXPECT_EQ(desktop.keyEvents.posted, expected);
    ASSERT_THAT(desktop.scripts.launched, SizeIs(1));
    EXPECT_EQ(desktop.scripts.launched[0].first, u"/usr/bin/osascript"_s);
    EXPECT_EQ(desktop.scripts.launched[0].second.value(1),
        u"tell application \"System Events\" to keystroke \"c\" using command down"_s);

    desktop.clock.advance(359ms);
    EXPECT_THAT(results, IsEmpty());
    desktop.clock.advance(1ms);
    EXPECT_THAT(results, ElementsAre(std::nullopt));
    EXPECT_EQ(log.messages().last(), exhausted);
    EXPECT_EQ(desktop.clock.pending(), 0);

    desktop.accessibility.bar.reset();
    fetch();
    reachKeystroke();
    desktop.pasteboard.copy(u"bằng phím"_s);
    desktop.clock.advance(30ms);
    EXPECT_EQ(results.back(), u"bằng phím"_s);
    EXPECT_EQ(log.messages().last(), u"fetchSelectedText: Layer 4 SUCCESS: 'bằng phím'"_s);

    desktop.keyEvents.isGranted = false;
    fetch();
    EXPECT_EQ(results.back(), std::nullopt) << "without keys there is none";
    EXPECT_EQ(log.messages().last(), exhausted);
    EXPECT_EQ(desktop.clock.pending(), 0);
}

TEST_F(SelectedText, the_shortcut_is_not_pressed_into_an_application_that_has_come_to_the_front_meanwhile) {
    const RunningApplication editor = *desktop.workspace.front;
    const RunningApplication unknown{0, u"one"_s, std::nullopt};
    const std::pair<RunningApplication, std::optional<RunningApplication>> changes[] = {
        {editor, std::nullopt}, {editor, RunningApplication{pid + 1, editor.bundleIdentifier, {}}},
        {unknown, RunningApplication{0, u"another"_s, {}}}};
    for (const auto& [before, after] : changes) {
        desktop.workspace.front = before;
        desktop.keyEvents.posted.clear();
        fetch();
        desktop.clock.advance(199ms);
        desktop.workspace.front = after;
        desktop.clock.advance(1ms);
        EXPECT_EQ(results.back(), std::nullopt);
        EXPECT_THAT(desktop.keyEvents.posted, SizeIs(8)) << "more than the modifiers";
        EXPECT_THAT(desktop.scripts.launched, IsEmpty());
        EXPECT_EQ(desktop.clock.pending(), 0);
    }
}

TEST_F(SelectedText, a_second_fetch_beside_a_waiting_one_keeps_its_own_count_and_ticks) {
    fetch();
    desktop.clock.advance(100ms);
    // A change for the first fetch, the initial state of the second.
    desktop.pasteboard.copy(u"giữa chừng"_s);
    fetch();
    desktop.clock.advance(130ms);
    EXPECT_THAT(results, ElementsAre(u"giữa chừng"_s));
    desktop.clock.advance(100ms);
    EXPECT_THAT(results, SizeIs(1));
    desktop.pasteboard.copy(u"thứ hai"_s);
    desktop.clock.advance(30ms);
    EXPECT_THAT(results, ElementsAre(u"giữa chừng"_s, u"thứ hai"_s));
}

}  // namespace
}  // namespace tralio
