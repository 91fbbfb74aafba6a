#include "platform/linux/selection/followed_primary_selection.h"

#include <gmock/gmock.h>

#include "support/print_to.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

TEST(FollowedPrimarySelection, counts_only_in_the_application_where_it_was_made) {
    QString front = u"editor"_s;
    FollowedPrimarySelection primary([](QDeadlineTimer) { return u"marked"_s; }, [&] { return front; });
    const auto text = [&] { return primary.textOf(1, QDeadlineTimer(0)); };
    EXPECT_EQ(text(), std::nullopt);  // there before we came

    primary.noteChange();
    EXPECT_EQ(text(), u"marked"_s);
    front = u"terminal"_s;
    EXPECT_EQ(text(), std::nullopt);
    front = u"editor"_s;
    EXPECT_EQ(text(), u"marked"_s);

    front.clear();  // nobody tells any more who is in front
    primary.noteChange();
    EXPECT_EQ(text(), std::nullopt);
}

}  // namespace
}  // namespace tralio
