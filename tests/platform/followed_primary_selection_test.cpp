#include "platform/linux/selection/followed_primary_selection.h"

#include "support/testing.h"

namespace tralio {
namespace {

class FollowedPrimary : public testing::Test {
protected:
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
    marked = u"two words"_s;
    EXPECT_FALSE(mark()->mayBePassword);
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

}  // namespace
}  // namespace tralio
