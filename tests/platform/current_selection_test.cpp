#include "platform/linux/selection/current_selection.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QWindow>

#include "common/text_limit.h"
#include "platform/linux/desktop/unavailable_desktop.h"
#include "platform/linux/selection/clipboard_formats.h"
#include "platform/linux/selection/focused_selection.h"
#include "platform/linux/selection/followed_primary_selection.h"
#include "platform/linux/selection/selection_history.h"
#include "support/testing.h"

namespace tralio {
namespace {

using Selected = ElementSelection::Answer;
using Reach = ElementSelection::Reach;

AskPrimary holding(std::optional<PrimaryText> mark) {
    return [mark = std::move(mark)] { return mark; };
}

TEST(CurrentSelection, of_an_element_that_shows_but_a_part_is_primary_if_that_has_the_part) {
    const QString both = u"one\ntwo"_s;
    const std::tuple<ElementSelection, std::optional<PrimaryText>, std::optional<QString>> cases[] = {
        {{Selected::some, u"two"_s, Reach::part}, PrimaryText{both}, both},
        {{Selected::some, u"\ufffc"_s, Reach::part}, PrimaryText{both}, both},
        {{Selected::some, u"\ufffctwo"_s, Reach::part}, PrimaryText{u" "_s}, u"two"_s},
        {{Selected::some, u"three"_s, Reach::part}, PrimaryText{both}, u"three"_s},
        {{Selected::some, u"two"_s, Reach::part}, std::nullopt, u"two"_s},
        {{Selected::some, u"two"_s, Reach::whole}, PrimaryText{both}, u"two"_s},
        {{Selected::some, u"\ufffc\ufffc"_s, Reach::whole}, PrimaryText{both}, both},
        {{Selected::some, u"\ufffc"_s, Reach::part}, PrimaryText{u"one\ufffc\ntwo"_s}, both},
        // The element has spoken, but of the old mark it may have but a part by now.
        {{Selected::some, u"\ufffc"_s, Reach::part}, PrimaryText{.text = both, .mayBePassword = true}, both},
        {{Selected::some, u"\ufffc"_s, Reach::part}, PrimaryText{.text = both, .mayBeGone = true},
            std::nullopt},
        {{Selected::some, u"two"_s, Reach::part}, PrimaryText{.text = both, .mayBeGone = true}, std::nullopt},
        {{Selected::some, both, Reach::part}, PrimaryText{.text = both, .mayBeGone = true}, both},
        {{Selected::none, {}, Reach::part}, PrimaryText{both}, std::nullopt},
        {{}, PrimaryText{both}, std::nullopt},
    };
    for (const auto& [element, primary, expected] : cases)
        EXPECT_EQ(selectedTextOf(element, holding(primary)), expected) << element.text.toStdString();
}

TEST(CurrentSelection, that_no_element_counts_is_primary_as_long_as_nothing_speaks_against_it) {
    EXPECT_EQ(uncountedSelection(holding(PrimaryText{u"mar\ufffcked"_s})), u"marked"_s);
    EXPECT_EQ(uncountedSelection(holding(PrimaryText{.text = u"marked"_s, .mayBeGone = true})), std::nullopt);
    EXPECT_EQ(
        uncountedSelection(holding(PrimaryText{.text = u"one"_s, .mayBePassword = true})), std::nullopt);
    EXPECT_EQ(uncountedSelection(holding(PrimaryText{u"•••••••"_s})), std::nullopt);
    EXPECT_EQ(uncountedSelection(holding(PrimaryText{u"• one"_s})), u"• one"_s);
    EXPECT_EQ(uncountedSelection(holding(std::nullopt)), std::nullopt);
}

TEST(CurrentSelection, beside_an_element_that_counts_none_is_a_fresh_mark_of_its_page_alone) {
    const PrimaryText old{.text = u"marked"_s};
    const PrimaryText fresh{.text = u"marked"_s, .isFresh = true};
    const PrimaryText secret{.text = u"marked"_s, .isFresh = true, .mayBePassword = true};
    const auto beside = [](Selected answer, Reach reach, const PrimaryText& mark) {
        return selectionBeside({answer, {}, reach}, holding(mark));
    };
    EXPECT_EQ(beside(Selected::unknown, Reach::part, old), u"marked"_s);
    EXPECT_EQ(beside(Selected::none, Reach::part, old), std::nullopt);
    EXPECT_EQ(beside(Selected::none, Reach::part, fresh), u"marked"_s);
    EXPECT_EQ(beside(Selected::none, Reach::part, secret), std::nullopt);
    EXPECT_EQ(beside(Selected::none, Reach::whole, fresh), std::nullopt);
    EXPECT_EQ(beside(Selected::some, Reach::part, fresh), std::nullopt);
}

TEST(CurrentSelection, may_be_a_password_when_it_is_one_word_of_an_application_that_may_tell_of_passwords) {
    for (const QString& text : {u"hunter2"_s, u" p@ss\n"_s, u"correct-horse"_s}) {
        EXPECT_TRUE(looksLikePassword(text, Marking::unknown)) << text.toStdString();
        EXPECT_TRUE(looksLikePassword(text, Marking::byDoubleClick)) << text.toStdString();
    }
    EXPECT_TRUE(looksLikePassword(u"nghiêng"_s, Marking::unknown));
    EXPECT_FALSE(looksLikePassword(u"nghie\u0302ng"_s, Marking::byDoubleClick));
    EXPECT_FALSE(looksLikePassword(u"two words2"_s, Marking::unknown));
    EXPECT_FALSE(looksLikePassword(u" "_s, Marking::unknown));

    // Of an input field of GTK 4 is believed what PRIMARY has, too.
    const std::tuple<QString, std::optional<PrimaryText>, bool> cases[] = {
        {u"một câu"_s, PrimaryText{u"một câu"_s}, false}, {u"hunter2"_s, PrimaryText{u"hunter2"_s}, false},
        {u"hunter2"_s, PrimaryText{u"một câu"_s}, true}, {u"hunter2"_s, std::nullopt, true},
        {u"ba từ dài"_s, PrimaryText{u"một câu"_s}, true}, {u"một câu"_s, std::nullopt, false}};
    for (const auto& [marked, primary, mayBePassword] : cases)
        EXPECT_EQ(mayBePasswordOfGtk4(marked, holding(primary)), mayBePassword) << marked.toStdString();

    for (const QString& name : {u"signal"_s, u"chrome-app.slack.com__-Default"_s, u"foo"_s, QString()})
        EXPECT_FALSE(keepsPasswordsToItself({name}, {})) << name.toStdString();
    EXPECT_FALSE(keepsPasswordsToItself({u"beekeeper-studio"_s}, u"Chromium"_s));
    EXPECT_TRUE(keepsPasswordsToItself({u"org.gnome.TextEditor"_s}, u"GTK"_s));
    EXPECT_TRUE(keepsPasswordsToItself({QString(), u"Foot"_s}, {}));
    EXPECT_TRUE(keepsPasswordsToItself({u"firefox-ESR"_s}, {}));
}

TEST(SelectionHistory, tells_by_what_a_mark_was_made_and_whether_the_mouse_was_pressed_since) {
    using Origin = SelectionHistory::Origin;
    SelectionHistory history;
    history.marked(10, false);
    EXPECT_EQ(history.origin(), Origin::keyboard) << "the mouse was never pressed";
    EXPECT_FALSE(history.isPressedSince());

    const quint32 start = 0xffffff00;  // the clock starts again in the middle of it
    history.pressed(start - 600, false);
    EXPECT_FALSE(history.isPressedSince()) << "elsewhere";
    history.keyPressed();
    EXPECT_TRUE(history.isKeyPressedSince());
    history.marked(start - 100, false);
    EXPECT_FALSE(history.isKeyPressedSince());
    history.pressed(start, true);
    EXPECT_TRUE(history.isPressedSince());
    history.marked(start + 5000, false);
    EXPECT_EQ(history.origin(), Origin::mouse) << "still held";
    EXPECT_FALSE(history.isPressedSince());
    history.released(start + 6000);
    EXPECT_FALSE(history.isPressedSince());
    history.marked(start + 6999, false);
    EXPECT_EQ(history.origin(), Origin::mouse);
    history.marked(start + 6999, true);
    EXPECT_EQ(history.origin(), Origin::keyboard) << "with keys held";
    history.marked(start + 7000, false);
    EXPECT_EQ(history.origin(), Origin::keyboard) << "long after";

    history.pressed(start + 9000, true);
    history.pressed(start + 9499, false);
    EXPECT_TRUE(history.isPressedSince());
    history.marked(start + 9500, false);
    EXPECT_EQ(history.origin(), Origin::doubleClick);
    history.pressed(start + 9999, true);
    history.marked(start + 9999, false);
    EXPECT_EQ(history.origin(), Origin::mouse) << "not quick enough for a double click";
}

TEST(ClipboardFormats, a_text_of_no_told_encoding_is_latin_1_unless_it_is_utf_8_and_keeps_its_mark) {
    using Encoding = TextFormat::Encoding;
    EXPECT_EQ(decodeText("caf\xe9", Encoding::eightBit), u"café"_s);
    EXPECT_EQ(decodeText("caf\xc3\xa9", Encoding::eightBit), u"café"_s);
    EXPECT_EQ(decodeText("caf\xe9", Encoding::utf8), u"caf\ufffd"_s);
    EXPECT_EQ(decodeText("\xef\xbb\xbf\x61", Encoding::utf8), u"\ufeffa"_s);
    const QByteArray longest = QByteArray("\xf0\xa0\xae\xb7").repeated(longestText);
    for (const Encoding encoding : {Encoding::utf8, Encoding::eightBit}) {
        EXPECT_EQ(decodeText(longest, encoding), QString::fromUtf8(longest));
        EXPECT_EQ(decodeText(longest + 'a', encoding).toUcs4().size(), longestText + 1)
            << "it says no more than that";
    }

    ToolkitPasteboard pasteboard;  // which the toolkit would read in its own way
    const auto readFrom = [&pasteboard](const std::map<QString, QByteArray>& formats) {
        auto* content = new QMimeData;
        for (const auto& [name, bytes] : formats)
            content->setData(name, bytes);
        QGuiApplication::clipboard()->setMimeData(content);
        return pasteboard.string();
    };
    EXPECT_EQ(readFrom({{u"STRING"_s, "caf\xe9"}, {u"UTF8_STRING"_s, "\xef\xbb\xbf\x61"}}), u"\ufeffa"_s);
    EXPECT_EQ(readFrom({{u"STRING"_s, "caf\xe9"}}), u"café"_s);
    EXPECT_EQ(readFrom({{u"image/png"_s, "caf\xe9"}}), std::nullopt);
}

struct FollowedPrimary : testing::Test {
    [[nodiscard]] std::optional<PrimaryText> mark() { return primary.textOf(1, QDeadlineTimer(0)); }

    QString front = u"editor"_s;
    QString marked = u"a text"_s;
    bool canCopy = false;
    std::chrono::milliseconds now = 1h;
    FollowedPrimarySelection primary{{[this](QDeadlineTimer) { return marked; }, [this] { return front; },
        [this] { return front == u"editor"; }, [this] { return canCopy; }, [this] { return now; }}};
};

TEST_F(FollowedPrimary, counts_only_in_the_application_where_it_was_made) {
    EXPECT_EQ(mark(), std::nullopt);  // there before we came

    primary.noteChange();
    EXPECT_EQ(mark()->text, u"a text"_s);
    front = u"browser"_s;
    EXPECT_EQ(mark(), std::nullopt);
    front = u"editor"_s;
    EXPECT_EQ(mark()->text, u"a text"_s);

    front.clear();  // nobody tells any more who is in front
    primary.noteChange();
    EXPECT_EQ(mark(), std::nullopt);

    marked = u"hunter2"_s;
    front = u"editor"_s;
    primary.noteChange();
    EXPECT_FALSE(mark()->mayBePassword);
    front = u"browser"_s;
    primary.noteChange();
    EXPECT_TRUE(mark()->mayBePassword);
    EXPECT_EQ(primary.takeDoubtfulWord(), QString());
    marked = u"vòng"_s;
    EXPECT_TRUE(mark()->mayBePassword);
    EXPECT_EQ(primary.takeDoubtfulWord(), u"vòng"_s) << "the user may well want to have it translated";
    EXPECT_EQ(primary.takeDoubtfulWord(), QString()) << "of an earlier press";
    (void)mark();
    primary.noteChange();
    EXPECT_EQ(primary.takeDoubtfulWord(), QString()) << "something else is marked";
    canCopy = true;
    EXPECT_TRUE(mark()->mayBePassword);
    EXPECT_EQ(primary.takeDoubtfulWord(), QString()) << "its Copy is asked";
    marked = u"two words"_s;
    EXPECT_FALSE(mark()->mayBePassword);
    EXPECT_EQ(primary.takeDoubtfulWord(), QString());
}

TEST_F(FollowedPrimary, that_is_old_or_was_asked_for_before_is_doubted_where_its_application_can_be_asked) {
    primary.noteChange();
    now += 9999ms;
    canCopy = true;
    EXPECT_FALSE(mark()->mayBeGone);
    EXPECT_FALSE(mark()->isFresh);
    now += 1ms;
    EXPECT_TRUE(mark()->mayBeGone) << "old";
    canCopy = false;
    EXPECT_FALSE(mark()->mayBeGone) << "nobody else can tell";
    canCopy = true;

    primary.noteChange();
    EXPECT_FALSE(mark()->mayBeGone);
    now += 999ms;
    EXPECT_FALSE(mark()->mayBeGone) << "the same press asks";
    EXPECT_TRUE(mark()->isFresh);
    now += 1ms;
    EXPECT_TRUE(mark()->mayBeGone) << "asked for before";
}

TEST(FocusedSelectionTest, tells_nothing_twice_and_offers_what_may_be_old_or_a_password) {
    using enum LateSelection::Use;
    QWindow window;
    window.show();
    window.requestActivate();
    FocusedSelection selection;
    const auto toldOf = [&](const QString& marked) {
        selection.readText = [marked] { return marked; };
        std::optional<LateSelection> told;
        selection.read([&](const LateSelection& late) { told = late; });
        EXPECT_TRUE(eventually([&] { return told.has_value(); }));
        return told.value_or(LateSelection());
    };
    EXPECT_EQ(toldOf(u"two words"_s), (LateSelection{u"two words"_s, offer})) << "there before we came";
    EXPECT_EQ(toldOf(u"two words"_s), LateSelection());
    selection.noteChange();
    EXPECT_EQ(toldOf(u"two words"_s), (LateSelection{u"two words"_s, translate}));
    for (const auto& [passed, use] : {std::pair(9999ms, translate), std::pair(10000ms, offer)}) {
        selection.now = [] { return 0ms; };
        selection.noteChange();
        selection.now = [passed] { return passed; };
        EXPECT_EQ(toldOf(u"two words"_s), (LateSelection{u"two words"_s, use})) << passed.count();
    }
    EXPECT_EQ(toldOf(u"vòng"_s), (LateSelection{u"vòng"_s, offer}));
    EXPECT_EQ(toldOf(u"hunter2"_s), LateSelection());
}

}  // namespace
}  // namespace tralio
