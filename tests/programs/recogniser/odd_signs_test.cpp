#include "programs/recogniser/mending/odd_signs.h"

#include "support/testing.h"

namespace tralio {
namespace {

TextLine rowOfLetters(const QRect& box, const std::vector<QRect>& letters) {
    return {box, 0, false, TextMarks::Kind::difference, 0, letters, {}};
}

/// What is left of a sign before "Settings" in a text of some letters.
QString before(const ReadWord& sign, const QRect& mark, const QString& word = u"Settings"_s) {
    std::vector<QRect> letters{mark};
    for (int x = 40; x < 120; x += 10)
        letters.emplace_back(x, 0, 8, 10);
    const QRect box(0, 0, 120, 10);
    std::vector<ReadLine> lines{{{sign, {word, 95, 1, u"eng"_s, QRectF(40, 0, 80, 10)}}, QRectF(box)},
        {{{u"Account"_s, 95, 0, u"eng"_s, {}}}, QRectF(0, 40, 80, 10)}};
    dropOddSigns(lines, {{{rowOfLetters(box, letters)}, box}});
    return lines[0].text();
}

TEST(OddSigns, before_a_text_are_drawings_if_it_cannot_begin_with_them) {
    const auto sign = [](const QString& text, double confidence = 60, const QString& pack = u"jpn"_s) {
        return ReadWord{text, confidence, 0, pack, QRectF(20, 0, 12, 10)};
    };
    const QRect far(20, 0, 12, 10);
    const QRect near(24, 0, 12, 10);
    EXPECT_EQ(before(sign(u"ョ"_s), far), u"Settings"_s);
    EXPECT_EQ(before(sign(u"ョ"_s, 90), far), u"ョ Settings"_s);
    EXPECT_EQ(before(sign(u"A"_s), far), u"A Settings"_s);
    EXPECT_EQ(before(sign(u"ョ"_s), near), u"ョ Settings"_s);
    EXPECT_EQ(before(sign(u"©"_s, 95, u"eng"_s), far), u"Settings"_s);
    EXPECT_EQ(before(sign(u"©"_s, 95, u"eng"_s), near), u"© Settings"_s);
    EXPECT_EQ(before(sign(u"©"_s, 95, u"eng"_s), far, u"2024"_s), u"© 2024"_s);
    EXPECT_EQ(before({u"·"_s, 53, 0, {}, QRectF(2, 0, 6, 10)}, far), u"Settings"_s) << "no mark is there";
    EXPECT_EQ(before({u"·"_s, 53, 0, {}, QRectF(22, 0, 6, 10)}, far), u"· Settings"_s);
}

/// Whether a sign alone in the row of a text is left.
bool stays(const QString& text, int height, double confidence = 93) {
    const QRect mark(200, 10 - height / 2, 8, height);
    const QRect label(0, 5, 100, 10);
    std::vector<QRect> letters;
    for (int x = 0; x < 100; x += 10)
        letters.emplace_back(x, 5, 8, 10);
    std::vector<ReadLine> lines{{{{text, confidence, 0, u"jpn"_s, QRectF(mark)}}, QRectF(mark)},
        {{{u"Hoạt động gì"_s, 95, 0, u"vie"_s, QRectF(label)}, {u"thêm"_s, 95, 1, u"vie"_s, {}}},
            QRectF(label)}};
    dropOddSigns(lines, {{{rowOfLetters(mark, {mark})}, mark}, {{rowOfLetters(label, letters)}, label}});
    return lines.size() == 2;
}

TEST(OddSigns, alone_are_drawings_if_they_are_too_large_or_of_a_script_that_nothing_else_is_of) {
    EXPECT_FALSE(stays(u")"_s, 17));
    EXPECT_TRUE(stays(u")"_s, 13));
    EXPECT_FALSE(stays(u"~"_s, 6));
    EXPECT_TRUE(stays(u"~"_s, 3));
    EXPECT_TRUE(stays(u"-"_s, 6));
    EXPECT_FALSE(stays(u"両"_s, 12, 51));
    EXPECT_TRUE(stays(u"両"_s, 12, 90));
    EXPECT_TRUE(stays(u"C"_s, 12, 51));
}

}  // namespace
}  // namespace tralio
