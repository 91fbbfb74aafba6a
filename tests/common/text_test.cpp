#include "common/excerpt.h"
#include "common/text_limit.h"
#include "support/testing.h"

namespace tralio {
namespace {

TEST(ExcerptTest, what_a_user_perceives_as_one_character_counts_as_one) {
    const std::tuple<const char*, QString, qsizetype> cases[] = {
        {"nothing", u""_s, 0},
        {"decomposed letters", u"Tiếng Việt"_s.normalized(QString::NormalizationForm_D), 10},
        {"an emoji outside the basic plane", u"a😀b"_s, 3},
        {"a family joined from four emoji", u"👨‍👩‍👧‍👦"_s, 1},
        {"a flag made of two letters", u"🇻🇳"_s, 1},
        {"an emoji with a skin tone", u"👍🏽"_s, 1},
        {"Hangul written in its parts", u"한"_s.normalized(QString::NormalizationForm_D), 1},
        {"a line end of two code units", u"a\r\nb"_s, 3},
        {"families beside Thai", u"สวัสดีครับ "_s + u"👨‍👩‍👧"_s.repeated(3), 11},
        {"an emoji beside Devanagari", u"मेरा👍🏽\r\n"_s, 4},
        {"flags beside Khmer", u"កា🇰🇭🇻🇳"_s, 3},
        {"a letter that somebody put many accents on", u"a"_s + QString(5000, QChar(0x0301)), 1},
    };
    for (const auto& [what, text, count] : cases) {
        EXPECT_EQ(characterCount(text), count) << what;
        // Thirty of them fit, and the thirty-first does not.
        EXPECT_EQ(excerpt(text.repeated(2)), text.repeated(2)) << what;
        EXPECT_EQ(excerpt(u"x"_s.repeated(29) + u' ' + text), u"x"_s.repeated(29) + u' ') << what;
    }
}

TEST(ExcerptTest, the_length_of_the_text_or_of_a_character_does_not_matter) {
    EXPECT_EQ(excerpt(u"ệ"_s.repeated(10'000'000)), u"ệ"_s.repeated(30));
    EXPECT_EQ(
        excerpt(u"👨‍👩‍👧‍👦"_s.repeated(31)), u"👨‍👩‍👧‍👦"_s.repeated(30));
    const QString stacked = u"a"_s + QString(5000, QChar(0x0301));
    EXPECT_EQ(excerpt(stacked + u"b"_s.repeated(100)), stacked + u"b"_s.repeated(29));
}

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
