#include "programs/recogniser/figures.h"

#include "support/testing.h"

namespace tralio {
namespace {

/// What becomes of a word over marks: digits ten pixels high, at those places, and smaller marks beside them.
QString mended(const QString& text, const std::vector<int>& digits, const std::vector<QRect>& dots,
    const QString& pack = {}) {
    TextLine line{QRect(0, 0, 100, 10), 0, false, TextMarks::Kind::difference, 0, {}, dots};
    for (const int x : digits)
        line.letters.emplace_back(x, 0, 6, 10);
    Reading reading{{{{{text, 90, 0, pack, QRectF(0, 0, 100, 12)}}, QRectF(0, 0, 100, 12)}}};
    mendFigures(reading, {line});
    return reading.lines[0].words[0].text;
}

TEST(Figures, their_separators_are_those_that_are_drawn) {
    const QRect comma(16, 8, 2, 4);
    const QRect point(16, 8, 2, 2);
    EXPECT_EQ(mended(u"7499€"_s, {0, 8, 20, 28, 40}, {comma}), u"74,99 €"_s);
    EXPECT_EQ(mended(u"74.99€"_s, {0, 8, 20, 28, 36}, {comma}), u"74,99€"_s);
    EXPECT_EQ(mended(u"74,99"_s, {0, 8, 20, 28}, {point}), u"74.99"_s);
    EXPECT_EQ(mended(u"74.99"_s, {0, 8, 20, 28}, {QRect(16, 8, 1, 2)}), u"74.99"_s) << "as it was read";
    EXPECT_EQ(mended(u"74.99円"_s, {0, 8, 20, 28, 36, 40}, {comma}), u"74,99円"_s);
    EXPECT_EQ(mended(u"2026,"_s, {0, 8, 16, 24}, {QRect(32, 8, 2, 4)}), u"2026,"_s);
    EXPECT_EQ(mended(u"74,99"_s, {0, 8, 20, 28}, {}), u"74,99"_s) << "of what was not found nothing follows";
}

TEST(Figures, no_sign_of_one_piece_has_an_accent) {
    EXPECT_EQ(mended(u"ó"_s, {0}, {}), u"6"_s);
    EXPECT_EQ(mended(u"ọ"_s, {0}, {QRect(2, 11, 2, 2)}), u"ọ"_s);
    EXPECT_EQ(mended(u"4:1ó"_s, {0, 12, 20}, {}), u"4:16"_s);
    for (const QString& word : {u"có"_s, u"hóa_đơn_2024.pdf"_s, u"khóa10"_s})
        EXPECT_EQ(mended(word, {0, 8}, {}), word);
}

TEST(Figures, a_price_has_the_sign_of_its_currency) {
    EXPECT_EQ(mended(u"\\75.00"_s, {}, {}, u"jpn"_s), u"¥75.00"_s);
    EXPECT_EQ(mended(u"\\75x"_s, {}, {}, u"jpn"_s), u"\\75x"_s);
    EXPECT_EQ(mended(u"\\192"_s, {}, {}, u"eng"_s), u"\\192"_s);
    EXPECT_TRUE(isPrice(u"34,90 €"_s) && isPrice(u"¥399.00"_s) && isPrice(u"€"_s));
    EXPECT_FALSE(isPrice(u"34,90"_s) || isPrice(u"渤19.00"_s) || isPrice(u"US$"_s));
}

}  // namespace
}  // namespace tralio
