#include "platform/linux/selection/followed_primary_selection.h"

#include <gmock/gmock.h>

#include "support/print_to.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

TEST(FollowedPrimarySelection, counts_only_in_the_application_where_it_was_made) {
    QString front = u"editor"_s;
    QString marked = u"a text"_s;
    FollowedPrimarySelection primary(
        [&](QDeadlineTimer) { return marked; }, [&] { return front; }, [&] { return front == u"editor"; });
    const auto mark = [&] { return primary.textOf(1, QDeadlineTimer(0)); };
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
    marked = u"two words"_s;
    EXPECT_FALSE(mark()->mayBePassword);
}

}  // namespace
}  // namespace tralio
