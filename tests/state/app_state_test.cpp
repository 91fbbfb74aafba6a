#include "state/app_state.h"

#include "support/debug_log_file.h"
#include "support/testing.h"

namespace tralio {
namespace {

TEST(AppStateTest, a_request_puts_the_trimmed_text_in_place_before_it_renews_the_trigger) {
    const DebugLogFile log;
    AppState state;
    std::vector<std::pair<QString, bool>> seen;
    QObject::connect(&state, &ObservableObject::objectWillChange, &state,
        [&] { seen.emplace_back(state.pendingTextToTranslate(), state.translateTriggerId().has_value()); });
    state.requestTranslation(u"\u3000 \u00a0\tword\u2029 \n"_s);
    EXPECT_EQ(seen, (std::vector<std::pair<QString, bool>>{{u""_s, false}, {u"word"_s, false}}));
    EXPECT_EQ(state.pendingTextToTranslate(), u"word"_s);

    const auto first = state.translateTriggerId();
    state.requestTranslation(u"word"_s);
    EXPECT_NE(state.translateTriggerId(), first);
    EXPECT_EQ(seen.size(), 4U) << "an equal text is announced, too";
    EXPECT_EQ(log.messages(), QStringList(2, u"AppState.requestTranslation: requested with text 'word'"_s));
}

TEST(AppStateTest, a_blank_request_is_dropped_and_a_long_one_logged_in_part) {
    const DebugLogFile log;
    AppState state;
    state.requestTranslation(u" \n\r\n "_s);
    EXPECT_EQ(state.translateTriggerId(), std::nullopt);
    const QString family = u"👨‍👩‍👧‍👦"_s;
    state.requestTranslation(family.repeated(100));
    EXPECT_EQ(state.pendingTextToTranslate(), family.repeated(100));
    const QString line = u"AppState.requestTranslation: requested with text '%1'"_s;
    EXPECT_THAT(log.messages(), ElementsAre(line.arg(QString()), line.arg(family.repeated(30))));
}

}  // namespace
}  // namespace tralio
