#include "common/text_limit.h"

#include "support/testing.h"

namespace tralio {
namespace {

TEST(TextLimitTest, a_text_is_too_long_by_its_characters_not_by_its_code_units) {
    const QString longest = u"𠮷"_s.repeated(longestText);
    EXPECT_FALSE(isTooLong(longest));
    EXPECT_TRUE(isTooLong(longest + u'a'));
    EXPECT_TRUE(isTooLong(QString(longestText, u'a') + QChar(0xdc00))) << "half a pair counts";
    EXPECT_EQ(
        tooLongMessage(u"𠮷"_s.repeated(1'234'567)), u"Văn bản quá dài (1.234.567 ký tự, tối đa 200.000)"_s);
}

TEST(TextLimitTest, what_was_not_read_to_its_end_is_too_long_whatever_trimming_takes_away) {
    for (const QString& read : {u"𠮷"_s.repeated(longestText + 9), QString(longestText, u' ') + u"word"_s,
             u" "_s, QString(longestText - 1, u'a') + u"𠮷 and more"_s}) {
        const QString text = beginningOfLongText(read).trimmed();
        EXPECT_TRUE(isTooLong(text));
        EXPECT_EQ(tooLongMessage(text), u"Văn bản quá dài (hơn 200.000 ký tự, tối đa 200.000)"_s);
    }
}

}  // namespace
}  // namespace tralio
