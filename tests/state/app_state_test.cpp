#include "state/app_state.h"

#include "support/debug_log_file.h"
#include "support/testing.h"

namespace tralio {
namespace {

TEST(AppStateTest, a_request_is_trimmed_logged_in_part_and_dropped_if_it_is_blank) {
    const DebugLogFile log;
    AppState state;
    state.requestTranslation(u" \n\r\n "_s);
    EXPECT_EQ(state.translateTriggerId(), std::nullopt);
    const QString family = u"👨‍👩‍👧‍👦"_s;
    state.requestTranslation(u"\u3000 \u00a0\tword\u2029 \n"_s);
    EXPECT_EQ(state.pendingTextToTranslate(), u"word"_s);
    EXPECT_NE(state.translateTriggerId(), std::nullopt);
    state.requestTranslation(family.repeated(100));
    EXPECT_EQ(state.pendingTextToTranslate(), family.repeated(100));
    const QString line = u"AppState.requestTranslation: requested with text '%1'"_s;
    EXPECT_THAT(
        log.messages(), ElementsAre(line.arg(QString()), line.arg(u"word"_s), line.arg(family.repeated(30))));
}

}  // namespace
}  // namespace tralio
