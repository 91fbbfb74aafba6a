#include "programs/recogniser/mending/figures.h"

#include "programs/recogniser/mending/accents.h"
#include "programs/recogniser/mending/commas.h"
#include "programs/recogniser/mending/lone_dashes.h"
#include "programs/recogniser/mending/quotes.h"
#include "programs/recogniser/mending/solid_blanks.h"
#include "programs/recogniser/mending/thin_letters.h"
#include "programs/recogniser/mending/wide_signs.h"
#include "programs/recogniser/reading/picture_languages.h"
#include "programs/recogniser/reading/prices.h"
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

TEST(Figures, have_the_blank_before_their_unit_that_is_drawn) {
    const std::vector<QRect> colon{{7, 2, 2, 2}, {7, 8, 2, 2}};
    EXPECT_EQ(mended(u"9:14AM"_s, {0, 11, 18, 28, 35}, colon), u"9:14 AM"_s);
    EXPECT_EQ(mended(u"9:14AM"_s, {0, 11, 18, 26, 33}, colon), u"9:14AM"_s);
    EXPECT_EQ(mended(u"39KB"_s, {0, 12, 20, 27}, {}), u"39KB"_s) << "a gap between the digits";
    EXPECT_EQ(mended(u"39KiB"_s, {0, 7, 17, 24, 31}, {}), u"39 KiB"_s);
    EXPECT_EQ(mended(u"xKB"_s, {0, 10, 17}, {}), u"xKB"_s);
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
    const QRect stroke(24, 11, 6, 1);
    EXPECT_EQ(mended(u"25004"_s, {0, 8, 16, 24}, {stroke}), u"2500₫"_s);
    EXPECT_EQ(mended(u"25.00đ"_s, {0, 8, 16, 24}, {stroke}), u"25.00₫"_s);
    EXPECT_EQ(mended(u"2500₫"_s, {0, 8, 16, 24}, {}), u"2500đ"_s) << "as low as the digits";
    EXPECT_EQ(mended(u"25004"_s, {0, 8, 16, 24}, {QRect(0, 11, 30, 1)}), u"25004"_s) << "underlined";
    EXPECT_EQ(mended(u"ca 4"_s, {0, 8, 24}, {stroke}), u"ca 4"_s) << "a menu's key";
    EXPECT_TRUE(isPrice(u"34,90 €"_s) && isPrice(u"¥399.00"_s) && isPrice(u"€"_s));
    EXPECT_FALSE(isPrice(u"34,90"_s) || isPrice(u"渤19.00"_s) || isPrice(u"US$"_s));
}

/// Words with a box from each place to the next, over marks ten pixels high.
ReadLine rowOf(const QStringList& words, const std::vector<double>& places) {
    ReadLine row{{}, QRectF(0, 0, 200, 10)};
    for (qsizetype i = 0; i < words.size(); ++i) {
        const double left = places[static_cast<size_t>(i)];
        row.words.push_back(
            {words[i], 90, 0, {}, QRectF(left, 0, places[static_cast<size_t>(i) + 1] - left, 10)});
    }
    return row;
}

TEST(Figures, have_the_sign_of_the_rouble_in_a_russian_picture) {
    const auto written = [](const QString& price, const QString& pack) {
        std::vector<Reading> readings{
            {{rowOf({price}, {0, 50})}}, {{ReadLine{{{u"Замена"_s, 96, 0, pack, {}}}, {}}}}};
        PictureLanguages(readings).writeRoubles(readings[0]);
        return readings[0].lines[0].text();
    };
    EXPECT_EQ(written(u"4 900 은"_s, u"rus"_s), u"4 900 ₽"_s);
    EXPECT_EQ(written(u"12 день"_s, u"rus"_s), u"12 день"_s);
    EXPECT_EQ(written(u"Игорь 은"_s, u"rus"_s), u"Игорь 은"_s);
    EXPECT_EQ(written(u"950 원"_s, {}), u"950 원"_s);
}

TEST(Commas, have_the_blank_behind_them_that_is_drawn) {
    const auto written = [](int comma, int next) {
        Reading reading{{rowOf({u"A,G"_s}, {0, 50})}};
        writeBlanksBehindCommas(reading,
            {{QRect(0, 0, 40, 10), 0, false, TextMarks::Kind::difference, 0,
                {{0, 0, 8, 10}, {next, 0, 8, 10}}, {{comma, 8, 2, 4}}}});
        return reading.lines[0].text();
    };
    EXPECT_EQ(written(9, 16), u"A, G"_s);
    EXPECT_EQ(written(9, 12), u"A,G"_s);
    EXPECT_EQ(written(11, 17), u"A,G"_s) << "of even widths";
}

TEST(WideSigns, are_written_behind_chinese_and_japanese_ones) {
    const auto written = [](ReadLine row, const std::vector<QRect>& letters, int blanks = 0) {
        row.words.back().blanksBefore = blanks;
        Reading reading{{std::move(row)}};
        writeWideSigns(
            reading, {{QRect(0, 0, 200, 10), 0, false, TextMarks::Kind::difference, 0, letters, {}}});
        return reading.lines[0].text();
    };
    const QRect sign(0, 0, 10, 10);
    EXPECT_EQ(written(rowOf({u"いい"_s, u"?"_s}, {0, 10, 20}), {}, 1), u"いい？"_s);
    EXPECT_EQ(written(rowOf({u"是吗?好!"_s}, {0, 50}), {}), u"是吗？好！"_s);
    EXPECT_EQ(written(rowOf({u"네?"_s, u"ok?"_s}, {0, 10, 20}), {}, 1), u"네? ok?"_s);
    EXPECT_EQ(written(rowOf({u"码:"_s, u"10"_s}, {0, 16, 30}), {sign, {17, 0, 6, 10}}, 1), u"码：10"_s);
    EXPECT_EQ(written(rowOf({u"码:"_s, u"10"_s}, {0, 13, 30}), {sign, {13, 0, 6, 10}}, 1), u"码: 10"_s);
    EXPECT_EQ(written(rowOf({u"午"_s, u"3:24"_s}, {0, 12, 30}), {sign, {13, 0, 6, 10}}), u"午 3:24"_s);
    EXPECT_EQ(written(rowOf({u"月"_s, u"30日"_s}, {0, 13, 30}), {sign, {13, 0, 6, 10}}, 1), u"月30日"_s);
    EXPECT_EQ(written(rowOf({u"共"_s, u"30个"_s}, {0, 15, 30}), {sign, {15, 0, 6, 10}}, 1), u"共 30个"_s);
    EXPECT_EQ(written(rowOf({u"楼"_s, u"305"_s}, {0, 14, 30}), {sign, {12, 0, 6, 10}}), u"楼305"_s);
}

TEST(Signs, have_the_blanks_between_them_that_break_their_pitch) {
    const auto written = [](const QStringList& words, const std::vector<std::pair<int, int>>& ends) {
        ReadLine row{{}, QRectF(0, 0, 200, 10)};
        for (const QString& word : words)
            row.words.push_back({word, 90, 0, {}, QRectF(0, 0, 100, 10)});
        Reading reading{{std::move(row)}};
        TextLine line{QRect(0, 0, 100, 10), 0, false, TextMarks::Kind::difference, 0, {}, {}};
        for (const auto& [left, right] : ends)
            line.letters.emplace_back(left, 0, right - left, 10);
        writeBlanksBetweenSigns(reading, {line});
        return reading.lines[0].text();
    };
    const std::vector<std::pair<int, int>> name{{0, 9}, {10, 19}, {23, 32}, {33, 42}};
    EXPECT_EQ(written({u"高橋美咲"_s}, name), u"高橋 美咲"_s);
    EXPECT_EQ(written({u"高"_s, u"橋"_s, u"美咲"_s}, name), u"高橋 美咲"_s);
    EXPECT_EQ(written({u"高橋美"_s}, name), u"高橋美"_s) << "a sign was not read";
    EXPECT_EQ(written({u"高橋Aい"_s}, name), u"高橋Aい"_s);
    EXPECT_EQ(written({u"一日目木"_s}, {{0, 9}, {12, 18}, {22, 28}, {30, 39}}), u"一日目木"_s)
        << "narrow signs of one pitch";
    EXPECT_EQ(written({u"高ト美咲"_s}, name), u"高ト美咲"_s) << "syllables have room of their own";
    EXPECT_EQ(written({u"高橋美咲"_s}, {{0, 9}, {10, 19}, {20, 29}, {30, 39}}), u"高橋美咲"_s);
}

TEST(ThinLetters, are_told_by_their_width_and_their_feet) {
    const auto mended = [](const QStringList& words, const QRect& first, const std::vector<QRect>& dots = {},
                            const QRect& second = {10, 0, 6, 10}) {
        Reading reading{
            {rowOf(words, words.size() == 1 ? std::vector<double>{0, 40} : std::vector<double>{-20, 0, 40})}};
        mendThinLetters(reading,
            {{QRect(0, 0, 80, 10), 0, false, TextMarks::Kind::difference, 0,
                {first, second, {50, 0, 6, 10}, {60, 0, 6, 10}}, dots}});
        return reading.lines[0].words.back().text;
    };
    const QRect stroke(2, 0, 2, 10);
    EXPECT_EQ(mended({u"Les"_s}, stroke), u"les"_s);
    EXPECT_EQ(mended({u"Les"_s}, {2, 0, 5, 10}), u"Les"_s);
    EXPECT_EQ(mended({u"|"_s}, stroke), u"I"_s);
    EXPECT_EQ(mended({u"Ctrl+l"_s}, {2, 0, 5, 10}), u"Ctrl+I"_s);
    EXPECT_EQ(mended({u"k+l"_s}, {2, 0, 5, 10}), u"k+l"_s);
    EXPECT_EQ(mended({u"Ctri+Shift"_s}, {2, 0, 5, 10}, {{28, 0, 2, 2}}), u"Ctrl+Shift"_s);
    EXPECT_EQ(mended({u"Ctri+Shift"_s}, {2, 0, 5, 10}, {{14, 0, 2, 2}}), u"Ctri+Shift"_s);
    EXPECT_EQ(mended({u"5"_s, u"|"_s}, stroke), u"l"_s) << "litres";
    EXPECT_EQ(mended({u"|"_s}, {2, 0, 2, 13}), u"|"_s);
    EXPECT_EQ(mended({u"[II"_s}, stroke, {{6, 0, 2, 3}}), u"I’ll"_s);
    EXPECT_EQ(mended({u"[II"_s}, stroke), u"[II"_s);
    EXPECT_EQ(mended({u"[II"_s}, stroke, {}, {6, 0, 2, 4}), u"I’ll"_s);
}

TEST(Quotes, are_straight_or_curly_as_they_are_drawn) {
    // Letters ten pixels high from each place on, and quotes of two columns between them.
    const auto mended = [](const QStringList& words, const std::vector<int>& quotes, bool curly,
                            int slant = 0) {
        BlockPicture picture{Plane(100, 12, 255), 1, {}};
        TextLine line{QRect(0, 0, 90, 10), 0, false, TextMarks::Kind::difference, 0, {}, {}};
        const auto draw = [&](int left, int width, int height, int lean) {
            for (int y = 0; y < height; ++y)
                std::fill_n(picture.plane.row(y) + left + (y * 2 < height ? lean : 0), width, quint8(0));
            (height == 10 ? line.letters : line.dots).emplace_back(left, 0, width + lean, height);
        };
        for (const int x : {8, 16, 24, 32, 40, 62})
            draw(x, 3, 10, slant);
        for (const int x : quotes)
            draw(x, 1, 4, curly ? 1 : 0);
        Reading reading{{rowOf(words, {0, 54, 90})}};
        tellQuotes(reading, {line}, picture);
        return reading.lines[0].text();
    };
    EXPECT_EQ(mended({u"l'eau"_s, u"e"_s}, {13}, true), u"l’eaue"_s);
    EXPECT_EQ(mended({u"l’eau"_s, u"e"_s}, {13}, false), u"l'eaue"_s);
    EXPECT_EQ(mended({u"“Hofs”"_s, u"e"_s}, {2, 5, 46, 49}, false), u"\"Hofs\"e"_s);
    EXPECT_EQ(mended({u"'Hof\""_s, u"e"_s}, {2, 5, 46}, true), u"“Hof”e"_s)
        << "two are not one sign, but one may be two that touch";
    EXPECT_EQ(mended({u"„Hof\""_s, u"e"_s}, {46, 49}, true), u"„Hof“e"_s);
    EXPECT_EQ(mended({u"l'eau"_s, u"e"_s}, {13}, true, 3), u"l'eaue"_s)
        << "of slanted letters nothing is told";
    EXPECT_EQ(mended({u"đeaux"_s, u"e's"_s}, {13}, true), u"d’eauxe's"_s);
    EXPECT_EQ(mended({u"leaux"_s, u"e"_s}, {}, true), u"leauxe"_s);
    EXPECT_EQ(mended({u"1235'"_s, u"e"_s}, {46}, true), u"1235'e"_s) << "feet";
    EXPECT_EQ(mended({u"Ứngdụ"_s, u"e"_s}, {13}, true), u"Ứngdụe"_s) << "a horn";
    EXPECT_EQ(mended({u"xềnhe"_s, u"e"_s}, {13}, true), u"xềnhee"_s) << "a grave";
}

/// A line of letters five pixels wide, below small marks, and the picture of it.
struct MarkedLine {
    /// A mark at each place, whose upper half is moved to the right by `lean`.
    MarkedLine(const std::vector<int>& letters, const std::vector<int>& marks, int lean) {
        for (const int x : letters)
            line.letters.emplace_back(x, 4, 5, 8);
        for (const int x : marks) {
            line.dots.emplace_back(x, 0, 2 + std::abs(lean), 2);
            for (const int y : {0, 1})
                std::fill_n(picture.plane.row(y) + x + (y == 0 ? std::max(0, lean) : std::max(0, -lean)), 2,
                    quint8(0));
        }
    }

    TextLine line{QRect(0, 0, 60, 12), 0, false, TextMarks::Kind::difference, 0, {}, {}};
    BlockPicture picture{Plane(60, 12, 255), 1, {}};
};

TEST(Accents, are_told_by_how_they_lean) {
    const auto written = [](const QString& word, int lean) {
        const MarkedLine marked({0, 10, 20}, {21}, lean);
        Reading reading{{rowOf({word}, {0, 30})}};
        tellAccents(reading, {marked.line}, marked.picture);
        return reading.lines[0].text();
    };
    EXPECT_EQ(written(u"chi."_s, 1), u"chí."_s);
    EXPECT_EQ(written(u"chì"_s, 1), u"chí"_s);
    EXPECT_EQ(written(u"chí"_s, -1), u"chì"_s);
    EXPECT_EQ(written(u"chí"_s, 0), u"chi"_s);
    EXPECT_EQ(written(u"chỉ"_s, 0), u"chỉ"_s) << "a small hook is as even";
    EXPECT_EQ(written(u"ciö"_s, 1), u"ció"_s);
    EXPECT_EQ(written(u"bên"_s, 1), u"bên"_s);
    EXPECT_EQ(written(u"nuê"_s, 1), u"nuê"_s) << "with a mark at its side";
    EXPECT_EQ(written(u"nuo"_s, 1), u"nuo"_s) << "noise";
    EXPECT_EQ(written(u"chiu"_s, 1), u"chiu"_s) << "letters that touch";
}

TEST(Accents, that_were_not_read_are_asked_for) {
    QStringList asked;
    const auto written = [&](const QString& word, const std::vector<int>& marks) {
        const MarkedLine marked({0, 10, 20}, marks, 0);
        TextBlock block;
        block.lines = {marked.line};
        std::vector<Reading> readings{{{rowOf({word}, {0, 30})}}};
        asked.clear();
        PictureLanguages(readings).restoreMarks(block, readings[0], [&](const QString& pack) {
            asked += pack;
            return Reading{{rowOf({pack == u"deu" ? u"für"_s : u"fúr"_s}, {0, 30})}};
        });
        return readings[0].lines[0].text();
    };
    EXPECT_EQ(written(u"fur"_s, {10, 13}), u"für"_s);
    EXPECT_FALSE(asked.isEmpty());
    EXPECT_EQ(written(u"fùr"_s, {10, 13}), u"fùr"_s) << "no mark is lost by that";
    EXPECT_EQ(written(u"fur"_s, {}), u"fur"_s);
    EXPECT_EQ(written(u"fir"_s, {11}), u"fir"_s);
    EXPECT_TRUE(asked.isEmpty()) << "every mark has been read";
}

TEST(LoneDashes, are_read_in_the_cells_of_a_table) {
    std::vector<ReadLine> cells;
    for (const double y : {0., 30., 60.})
        for (const double x : {0., 100., 200.})
            if (y != 30 || x != 100)
                cells.push_back({{{u"cell"_s, 90, 0, {}, {}}}, QRectF(x, y, 40, 12)});
    const auto dashes = [&](const QRect& mark, const QRect& other = {}) {
        std::vector<ReadLine> lines = cells;
        addLoneDashes(lines, {{mark}, {other}}, 1);
        QString added;
        for (size_t i = cells.size(); i < lines.size(); ++i)
            added += lines[i].text();
        return added;
    };
    EXPECT_EQ(dashes({100, 36, 7, 1}), u"–"_s);
    EXPECT_EQ(dashes({100, 36, 4, 1}), u"-"_s);
    EXPECT_EQ(dashes({100, 36, 12, 1}), u"—"_s);
    EXPECT_EQ(dashes({85, 36, 7, 1}), QString()) << "in no column";
    EXPECT_EQ(dashes({100, 42, 7, 1}), QString()) << "a line below";
    EXPECT_EQ(dashes({100, 36, 30, 1}), QString()) << "a rule";
    EXPECT_EQ(dashes({45, 6, 7, 1}), QString()) << "of the text beside";
    EXPECT_EQ(dashes({100, 36, 7, 1}, {100, 33, 7, 1}), QString()) << "of an icon";
}

}  // namespace
}  // namespace tralio
