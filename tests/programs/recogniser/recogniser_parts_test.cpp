#include <random>

#include "programs/recogniser/lines/text_blocks.h"
#include "programs/recogniser/mending/underscores.h"
#include "programs/recogniser/pixels/resample.h"
#include "programs/recogniser/pixels/window_median.h"
#include "programs/recogniser/reading/is_text.h"
#include "programs/recogniser/reading/letter_marks.h"
#include "programs/recogniser/reading/mixed_reading.h"
#include "programs/recogniser/reading/repeated_lines.h"
#include "support/testing.h"

namespace tralio {
namespace {

Plane noise(int width, int height) {
    std::mt19937 random(3);
    Plane plane(width, height);
    for (quint8& pixel : plane.pixels())
        pixel = static_cast<quint8>(random());
    return plane;
}

TEST(WindowMedian, is_the_middle_value_of_the_window_as_far_as_the_picture_goes) {
    const Plane plane = noise(23, 11);
    for (const auto& [radiusX, radiusY] : {std::pair(3, 2), {0, 0}, {1, 9}, {40, 1}, {120, 120}}) {
        const Plane median = windowMedian(plane, radiusX, radiusY);
        for (int y = 0; y < plane.height(); ++y) {
            for (int x = 0; x < plane.width(); ++x) {
                std::vector<quint8> window;
                for (int row = std::max(0, y - radiusY); row <= std::min(10, y + radiusY); ++row)
                    window.insert(window.end(), plane.row(row) + std::max(0, x - radiusX),
                        plane.row(row) + std::min(22, x + radiusX) + 1);
                std::sort(window.begin(), window.end());
                ASSERT_EQ(median.row(y)[x], window[(window.size() - 1) / 2])
                    << x << ',' << y << " in a window of " << radiusX << ',' << radiusY;
            }
        }
    }
}

TEST(Resample, keeps_flat_areas_flat_and_edges_where_they_are) {
    EXPECT_EQ(resample(Plane(9, 5, 77), 23, 11), Plane(23, 11, 77));
    EXPECT_EQ(resample(noise(12, 7), 12, 7), noise(12, 7));
    Plane edge(8, 4, 255);
    for (int y = 0; y < 4; ++y)
        std::fill_n(edge.row(y), 4, 0);
    const Plane enlarged = resample(edge, 20, 10);
    for (int x = 0; x < 20; ++x)
        EXPECT_EQ(enlarged.row(5)[x] < 128, x < 10) << x;
}

/// A line of one word.
ReadLine line(const QString& text, double confidence = 90, double top = 0) {
    return {{{text, confidence, 0}}, QRectF(10, top, 200, 20)};
}

/// A line of several.
Reading row(const std::vector<ReadWord>& words) {
    return {{{words, {}}}};
}

/// A line of words that stand in certain places.
ReadLine placed(const std::vector<std::pair<QString, QRectF>>& words, double confidence) {
    ReadLine line;
    for (const auto& [text, box] : words) {
        line.words.push_back({text, confidence, 1, {}, box});
        line.box |= box;
    }
    return line;
}

QStringList texts(const Reading& reading) {
    QStringList texts;
    for (const ReadLine& one : reading.lines)
        texts += one.text();
    return texts;
}

TEST(Reading, of_two_engines_each_line_is_the_better_ones) {
    const Reading latin{{line(u"HUIN=>2"_s, 40, 0), line(u"Right-click"_s, 96, 30)}};
    const Reading japanese{{line(u"新しい"_s, 92, 1), line(u"RighT-cIick"_s, 97, 31)}};
    EXPECT_THAT(texts(bestLines(latin, japanese, 3)), ElementsAre(u"新しい"_s, u"Right-click"_s));
    EXPECT_THAT(texts(bestLines(japanese, latin, 3)), ElementsAre(u"新しい"_s, u"RighT-cIick"_s));
    const Reading russian{{line(u"Dong Си-пе Ma Uy"_s, 20, 0), line(u"Right-cIicк"_s, 99, 30)}};
    EXPECT_THAT(texts(bestLines(latin, russian, 3)), ElementsAre(u"HUIN=>2"_s, u"Right-click"_s))
        << "a line with one letter of another script is no line of that script";

    // One of them took two lines for one; it is the two or the one, never all three.
    const QString both = u"両方をまとめて"_s;
    Reading merged{{line(both, 70, 0)}};
    merged.lines[0].box.setHeight(50);
    EXPECT_THAT(texts(bestLines(merged, japanese, 3)), ElementsAre(u"新しい"_s, u"RighT-cIick"_s));
    merged.lines[0].words[0].confidence = 99;
    EXPECT_THAT(texts(bestLines(japanese, merged, 2)), ElementsAre(both));
    EXPECT_THAT(texts(bestLines(merged, {{line(u"方"_s, 100)}}, 0)), ElementsAre(both))
        << "one sign is no line";
    EXPECT_THAT(texts(bestLines(Reading(), latin, 3)), ElementsAre(u"HUIN=>2"_s, u"Right-click"_s));
}

TEST(Reading, code_prices_and_look_alikes_are_in_no_other_script) {
    const std::pair<QString, bool> cases[] = {{u"изег$"_s, false}, {u"зе1Е"_s, false}, {u"уа\\ие"_s, false},
        {u"ТНОТ"_s, false}, {u"Отмена"_s, true}, {u"Да"_s, true}, {u"开始"_s, true}};
    for (const auto& [word, isTaken] : cases) {
        const QString latin = u"User"_s;
        const auto before = [&](const QString& text, double confidence) {
            return row(
                {{latin, 95, 0, {}, QRectF(0, 0, 50, 20)}, {text, confidence, 1, {}, {60, 0, 50, 20}}});
        };
        Reading line = before(u"read"_s, 20);
        line.lines[0].box = QRectF(0, 0, 110, 20);
        Reading other = before(word, 95);
        other.lines[0].box = line.lines[0].box;
        const QString wanted = latin + u' ' + (isTaken ? word : u"read"_s);
        EXPECT_THAT(texts(bestLines(line, other, 3)), ElementsAre(wanted));
        adoptWords(line, other, ScriptKind::other);
        EXPECT_THAT(texts(line), ElementsAre(wanted));
    }
    EXPECT_THAT(texts(bestLines({{line(u"3B"_s, 60)}}, {{line(u"3月"_s, 70)}}, 3)), ElementsAre(u"3月"_s));
    EXPECT_THAT(texts(bestLines({{line(u"name"_s, 79)}}, {{line(u"пате"_s, 88)}}, 3)), ElementsAre(u"name"_s))
        << "Russian is read better";
    const QString code = u"print(\"a test of it\")"_s;
    Reading misread = row(
        {{u"рт1пт(\""_s, 40, 0}, {u"а"_s, 90, 1}, {u"test"_s, 95, 1}, {u"оф"_s, 95, 1}, {u"it\")"_s, 95, 1}});
    misread.lines[0].box = line(code).box;
    EXPECT_THAT(texts(bestLines({{line(code, 50)}}, misread, 3)), ElementsAre(code)) << "one short word";
    EXPECT_THAT(texts(bestLines({{line(u"¥158.00"_s, 54)}}, {{line(u"보58.00"_s, 70)}}, 3)),
        ElementsAre(u"¥158.00"_s));
    Reading signs =
        row({{u"待"_s, 93, 0, {}, QRectF(0, 0, 60, 20)}, {u"付款"_s, 60, 0, {}, QRectF(20, 0, 40, 20)}});
    signs.lines[0].box = QRectF(0, 0, 60, 20);
    adoptWords(signs, Reading(signs), ScriptKind::other);
    EXPECT_THAT(texts(signs), ElementsAre(u"待付款"_s)) << "a sign with the box of its word";
    EXPECT_EQ(bestLines({{line(u"4.2 MB"_s, 49)}}, {{line(u"4.2MB"_s, 93)}}, 3).confidence(), 60);
    EXPECT_THAT(
        texts(bestLines({{line(u"9.000a"_s, 60)}}, {{line(u"9.000а"_s, 70)}}, 3)), ElementsAre(u"9.000a"_s));
}

TEST(Reading, of_words_that_differ_in_their_marks_a_vietnamese_text_has_the_richer_ones) {
    const auto word = [](const QString& text, const QString& pack = {}) {
        return ReadWord{text, 95, 1, pack};
    };
    const QString eng = u"eng"_s;
    const QString vie = u"vie"_s;
    Reading mixed = row({word(u"Dang"_s, eng), word(u"tải"_s, vie), word(u"plugin"_s, eng), word(u"vê"_s)});
    ASSERT_EQ(mixed.linesThatMayLackMarks().size(), 1U);
    adoptMarks(mixed.lines, row({word(u"Đang"_s), word(u"tai"_s), word(u"pIugin"_s), word(u"về"_s)}));
    EXPECT_THAT(texts(mixed), ElementsAre(u"Đang tải plugin về"_s));
    adoptMarks(mixed.lines, row({word(u"tải"_s), word(u"plügin"_s)}));
    EXPECT_THAT(texts(mixed), ElementsAre(u"Đang tải plügin về"_s)) << "a word that the other did not see";

    EXPECT_TRUE(row({word(u"Tải"_s, vie), word(u"(12)"_s, eng)}).linesThatMayLackMarks().empty());
    EXPECT_TRUE(row({word(u"Please"_s, eng), word(u"wait"_s, vie)}).linesThatMayLackMarks().empty());
}

TEST(Reading, only_lines_that_need_it_are_read_again_and_those_that_overlap_them) {
    const auto at = [](double top, const QString& pack, double confidence = 95) {
        return ReadLine{{{u"đưa trang"_s, confidence, 0, pack}}, QRectF(10, top, 200, 20)};
    };
    const QString eng = u"eng"_s;
    Reading page{
        {at(0, {}), at(30, eng), at(60, eng), at(90, {}), at(120, {}), at(130, eng, 70), at(160, {}, 83)}};
    const auto places = [&page](const std::vector<Reading::Stretch>& stretches) {
        std::vector<std::pair<ptrdiff_t, size_t>> places;
        for (const Reading::Stretch stretch : stretches)
            places.emplace_back(stretch.data() - page.lines.data(), stretch.size());
        return places;
    };
    const auto marks = page.linesThatMayLackMarks();
    EXPECT_THAT(places(marks), ElementsAre(std::pair(1, 2U), std::pair(4, 2U)));
    EXPECT_EQ(page.heightsOf(marks[0]).top, 25);
    EXPECT_EQ(page.heightsOf(marks[0]).bottom, 85);
    EXPECT_THAT(places(page.linesBelow(84)), ElementsAre(std::pair(4, 3U)));
    EXPECT_THAT(places(page.linesBelow(80)), ElementsAre(std::pair(4, 2U)));
    EXPECT_GT(page.heightsOf(page.linesBelow(84)[0]).bottom, 10'000) << "to the end of the picture";

    // What a strip of a picture shows stands where it did.
    const BlockPicture picture{Plane(40, 100, 7), 2, QPointF(5, 6)};
    const BlockPicture strip = picture.strip(16, 31);
    EXPECT_EQ(strip.plane.height(), 30 + 20);
    EXPECT_EQ(strip.inImage(QRectF(10, 10, 8, 4)), QRectF(5, 16, 4, 2));
    EXPECT_EQ(picture.strip(-1000, 1000).plane, picture.plane);
}

TEST(Reading, of_words_that_differ_in_their_marks_the_surer_ones_are_taken_but_for_those_with_fewer) {
    Reading read = row(
        {{u"Les"_s, 92, 1}, {u"éléves"_s, 91, 1}, {u"dîner"_s, 91, 1}, {u"été"_s, 80, 1}, {u"a"_s, 93, 1}});
    adoptSurerMarks(read.lines,
        row({{u"Les"_s, 96, 1}, {u"élèves"_s, 96, 1}, {u"diner"_s, 97, 1}, {u"étè"_s, 85, 1},
            {u"à"_s, 96, 1}}));
    EXPECT_THAT(texts(read), ElementsAre(u"Les élèves dîner été à"_s));
}

TEST(Reading, tells_dots_from_dashes_drops_the_remains_of_frames_and_icons_and_keeps_blanks_between_words) {
    const auto dash = [](double width) { return ReadWord{u"-"_s, 90, 1, {}, QRectF(0, 0, width, 3)}; };
    Reading reading = row({{u"3"_s, 90, 0}, dash(3), {u"4"_s, 90, 1}, dash(7)});
    reading.tellDotsFromDashes();
    EXPECT_THAT(texts(reading), ElementsAre(u"3 · 4 -"_s)) << "as high as wide";

    reading = {
        {{{{u"|"_s, 40, 0}, {u"Accept"_s, 95, 1}, {u"—"_s, 80, 1}, {u"]"_s, 60, 1}}, QRectF(0, 0, 100, 20)},
            {{{u"oÐ"_s, 30, 0}}, QRectF(0, 30, 20, 20)}, {{{u"..."_s, 50, 0}}, QRectF(0, 60, 20, 20)},
            {{{u"OK"_s, 60, 0}}, QRectF(0, 90, 20, 20)}}};
    reading.dropDirt();
    EXPECT_THAT(texts(reading), ElementsAre(u"Accept —"_s, u"OK"_s));
    EXPECT_EQ(Reading().confidence(), 0);

    const std::pair<QString, QString> joined[] = {
        {u"ă"_s, u"b"_s}, {u"版"_s, u"2"_s}, {u"다시"_s, u"입력"_s}, {u"。"_s, u"今"_s}};
    for (const auto& [first, second] : joined)
        EXPECT_THAT(texts(row({{first, 90, 0}, {second, 90, 1}})),
            ElementsAre(first == u"。" ? first + second : first + u' ' + second));
}

TEST(Reading, a_row_of_icons_is_no_text_and_one_of_figures_or_of_words_is) {
    const auto read = [](const QStringList& words, double confidence) {
        ReadLine line;
        for (const QString& word : words)
            line.words.push_back({word, confidence, 1});
        return isText(line, false);
    };
    EXPECT_FALSE(read({u"BØOv"_s, u"ñ"_s, u"+"_s, u"#"_s, u"エマ"_s, u"+"_s, u"#4"_s, u"DP"_s}, 53));
    EXPECT_TRUE(read({u"1"_s, u"2"_s, u"3"_s, u"4"_s}, 70));
    EXPECT_TRUE(read({u"Ta"_s, u"đi"_s, u"ở"_s, u"đó"_s}, 53));
    EXPECT_TRUE(read({u"a"_s, u"to"_s, u"Enter"_s, u"here"_s}, 53));
    EXPECT_TRUE(read({u"请"_s, u"先"_s, u"关闭"_s, u"它"_s}, 53));
    EXPECT_TRUE(read({u"F9"_s}, 53));
}

TEST(Reading, words_have_the_underscores_between_them_and_only_those) {
    const auto word = [](const QString& text, double left, double right) {
        return ReadWord{text, 90, 1, {}, QRectF(left, 10, right - left, 10)};
    };
    Reading code = row({word(u"max"_s, 0, 28), word(u"user_"_s, 40, 78), word(u"id"_s, 79, 100),
        word(u"row"_s, 112, 140), word(u"id"_s, 152, 170)});
    code.lines[0].box = QRectF(0, 5, 180, 18);
    TextLine line{QRect(0, 5, 180, 18), 0, false, {}, 0, std::vector(8, QRect(0, 11, 8, 9)),
        {QRect(29, 21, 10, 1), QRect(68, 21, 10, 1), QRect(101, 15, 10, 1), QRect(142, 21, 2, 2)}};
    restoreUnderscores(code, {line});
    EXPECT_THAT(texts(code), ElementsAre(u"max_user_id row id"_s));
    Reading korean = row({word(u"이름"_s, 0, 28), word(u"로"_s, 40, 50)});
    korean.lines[0].box = line.box;
    restoreUnderscores(korean, {line});
    EXPECT_THAT(texts(korean), ElementsAre(u"이름 로"_s)) << "that is a stroke";
    Reading photograph = row({word(u"max"_s, 0, 28), word(u"user"_s, 40, 78)});
    photograph.lines[0].box = line.box;
    line.isShaded = true;
    restoreUnderscores(photograph, {line});
    EXPECT_THAT(texts(photograph), ElementsAre(u"max user"_s));
}

TEST(Reading, marks_are_counted_and_foreign_letters_told_from_vietnamese_ones) {
    const std::tuple<QString, int, bool> cases[] = {{u"Đường về"_s, 6, false}, {u"über"_s, 1, true},
        {u"raíz"_s, 1, false}, {u"größer"_s, 1, true}, {u"plain"_s, 0, false}, {u"3 + 4"_s, 0, false}};
    for (const auto& [text, marks, isForeign] : cases) {
        const Reading reading{{line(text)}};
        EXPECT_EQ(reading.markCount(), marks) << text.toStdString();
        EXPECT_EQ(reading.hasForeignLetters(), isForeign) << text.toStdString();
    }
}

TEST(Reading, chinese_signs_without_syllables_may_be_of_either_language) {
    const std::pair<QString, bool> cases[] = {{u"昨天夜里"_s, true}, {u"3月 Excel 表格"_s, true},
        {u"明日の朝"_s, false}, {u"アニメ映画"_s, false}, {u"sáng mai"_s, false}};
    for (const auto& [text, isAlone] : cases)
        EXPECT_EQ((Reading{{line(text)}}.isHanAlone()), isAlone) << text.toStdString();
}

TEST(RepeatedLines, of_lines_in_one_place_the_one_with_more_stays_and_a_figure_in_a_gap_too) {
    const QRectF first(10, 10, 60, 20);
    const QRectF second(130, 10, 60, 20);
    Reading all{{placed({{u"anh có"_s, first}}, 97)}};
    addBetterLines(all.lines, {placed({{u"anh có"_s, first}, {u"không?"_s, second}}, 90)});
    addBetterLines(
        all.lines, {placed({{u"Кһопд"_s, second}}, 70), placed({{u"12"_s, QRectF(90, 12, 20, 16)}}, 95)});
    EXPECT_EQ(texts(all), (QStringList{u"anh có không?"_s, u"12"_s}));
}

}  // namespace
}  // namespace tralio
