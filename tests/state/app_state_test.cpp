#include "state/app_state.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

#include "support/debug_log_file.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

TEST(AppStateTest, a_request_puts_the_trimmed_text_in_place_before_it_renews_the_trigger) {
    const DebugLogFile log;
    AppState state;
    struct Seen {
        QString pending;
        bool triggered;
        bool operator==(const Seen&) const = default;
    };
    std::vector<Seen> seen;
    QObject::connect(&state, &ObservableObject::objectWillChange, &state, [&] {
        seen.push_back({state.pendingTextToTranslate(), state.translateTriggerId().has_value()});
    });
    state.requestTranslation(u"\u3000 \u00a0\tword\u2029 \n"_s);
    EXPECT_EQ(seen, (std::vector<Seen>{{u""_s, false}, {u"word"_s, false}}));
    EXPECT_EQ(state.pendingTextToTranslate(), u"word"_s);

    const auto first = state.translateTriggerId();
    state.requestTranslation(u"word"_s);
    EXPECT_NE(state.translateTriggerId(), first);
    EXPECT_EQ(first.value().version(), QUuid::Random);
    EXPECT_EQ(log.messages(), QStringList(2, u"AppState.requestTranslation: requested with text 'word'"_s));
}

TEST(AppStateTest, a_blank_request_is_logged_and_dropped) {
    const DebugLogFile log;
    AppState state;
    const QSignalSpy changes(&state, &ObservableObject::objectWillChange);
    state.requestTranslation(u""_s);
    state.requestTranslation(u" \n\r\n "_s);
    EXPECT_EQ(log.messages(), QStringList(2, u"AppState.requestTranslation: requested with text ''"_s));
    EXPECT_TRUE(changes.isEmpty());
    EXPECT_EQ(state.translateTriggerId(), std::nullopt);
}

TEST(AppStateTest, a_long_text_is_kept_whole_and_logged_in_part) {
    const DebugLogFile log;
    AppState state;
    const QString text = u"👨‍👩‍👧‍👦"_s.repeated(100);
    state.requestTranslation(text);
    EXPECT_EQ(state.pendingTextToTranslate(), text);
    EXPECT_EQ(log.messages(), QStringList(u"AppState.requestTranslation: requested with text '"_s +
                                          u"👨‍👩‍👧‍👦"_s.repeated(30) + u"'"_s));
}

TEST(AppStateTest, each_opening_of_the_popover_renews_the_signal) {
    AppState state;
    const QUuid initial = state.openPopoverSignal();
    EXPECT_FALSE(initial.isNull());
    const QSignalSpy changes(&state, &ObservableObject::objectWillChange);
    state.notifyPopoverOpened();
    EXPECT_NE(state.openPopoverSignal(), initial);
    EXPECT_EQ(changes.size(), 1);
}

TEST(AppStateTest, the_popover_is_shown_and_hidden_by_what_the_shell_installed) {
    AppState state;
    state.showPopover();  // nothing is installed yet
    state.hidePopover();
    QStringList calls;
    state.onShowPopover = [&] { calls += u"show"_s; };
    state.onHidePopover = [&] { calls += u"hide"_s; };
    state.hidePopover();
    state.showPopover();
    EXPECT_EQ(calls, QStringList({u"hide"_s, u"show"_s}));
}

TEST(AppStateTest, only_what_panels_watch_is_announced) {
    AppState state;
    EXPECT_FALSE(state.showOnboarding());
    EXPECT_EQ(state.lastHandledChangeCount, -1);
    const QSignalSpy changes(&state, &ObservableObject::objectWillChange);
    state.lastHandledChangeCount = 7;
    EXPECT_EQ(changes.size(), 0);
    state.showOnboarding = true;
    EXPECT_EQ(changes.size(), 1);
}

}  // namespace
}  // namespace tralio
