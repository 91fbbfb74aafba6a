#include "update/version_order.h"

#include "support/testing.h"

namespace tralio {
namespace {

TEST(VersionOrderTest, numbers_count_by_value_without_leading_zeros_and_the_rest_by_character_code) {
    const QString hundredNines(100, u'9');
    const QString googol = u'1' + QString(100, u'0');
    const std::pair<QString, QString> ascending[] = {
        {u"1.0.9"_s, u"1.0.10"_s},
        {u"1.1"_s, u"1.1.0"_s},
        {u"1.99"_s, u"2.0"_s},
        {u"1.007b"_s, u"1.7c"_s},
        {u""_s, u"0"_s},
        {u"1.0"_s, u"1.0b"_s},
        {u"1.0B"_s, u"1.0a"_s},
        {u"1.-"_s, u"1.0"_s},
        {hundredNines, googol},
        {u"000"_s + hundredNines + u".1"_s, hundredNines + u".2"_s},
        {u"1\uFF5E"_s, u"1\U0001F600"_s},
        {u"9"_s, u"\u0661"_s},
    };
    for (const auto& [smaller, greater] : ascending) {
        EXPECT_TRUE(compareVersions(smaller, greater) < 0) << qPrintable(smaller + u" < "_s + greater);
        EXPECT_TRUE(compareVersions(greater, smaller) > 0) << qPrintable(greater + u" > "_s + smaller);
    }
    EXPECT_TRUE(compareVersions(u"1.01"_s, u"1.1"_s) == 0);
    EXPECT_TRUE(compareVersions(u"0"_s, u"000"_s) == 0);
}

}  // namespace
}  // namespace tralio
