#include "programs/recogniser/sheet.h"
#include "support/testing.h"

namespace tralio {
namespace {

using Art = std::vector<std::string_view>;

/// How many letters are seen in what stands 8 pixels before a label, and goes so far beneath that.
size_t lettersIn(const Art& art, QColor ink = Qt::black, int beneath = 0) {
    constexpr size_t label = 6;
    Sheet sheet(160, 40);
    const QPoint at(
        60 - 8 - static_cast<int>(art.front().size()), 26 + beneath - static_cast<int>(art.size()));
    for (size_t y = 0; y < art.size(); ++y)
        for (size_t x = 0; x < art[y].size(); ++x)
            if (art[y][x] == '#')
                sheet.fill({at + QPoint(static_cast<int>(x), static_cast<int>(y)), QSize(1, 1)}, ink);
    size_t all = 0;
    for (const TextLine& line : Found(sheet.type({60, 14}, label, 12)).lines)
        all += line.letters.size();
    return all - label;
}

TEST(Drawings, are_told_from_signs) {
    const Art cross{
        "##....##", "###..###", ".######.", "..####..", "..####..", ".######.", "###..###", "##....##"};
    const Art tick{".......##", "......##.", "##...##..", ".##.##...", "..###....", "...#....."};
    const Art down{"#########", ".#######.", "..#####..", "...###...", "....#...."};
    const Art right{"#...", "##..", "###.", "####", "####", "###.", "##..", "#..."};
    const Art box{"############", "#..........#", "#........#.#", "#.......##.#", "#.#....##..#",
        "#.##..##...#", "#..####....#", "#...##.....#", "#..........#", "#..........#", "#..........#",
        "############"};
    const Art disc{"...######...", "..########..", ".##########.", "############", "############",
        "############", "############", "############", "############", ".##########.", "..########..",
        "...######..."};
    const Art radioButton{"....######....", "..##......##..", ".#..........#.", ".#..........#.",
        "#....####....#", "#...######...#", "#...######...#", "#...######...#", "#...######...#",
        "#....####....#", ".#..........#.", ".#..........#.", "..##......##..", "....######...."};
    const Art chevron{
        "##....", "###...", ".###..", "..###.", "...###", "...###", "..###.", ".###..", "###...", "##...."};
    for (const Art& art : {cross, tick, down, right, box, disc, radioButton, chevron})
        EXPECT_EQ(lettersIn(art), 0) << art.front();

    const Art x{
        "###..###", ".##..##.", "..####..", "...##...", "...##...", "..####..", ".##..##.", "###..###"};
    const Art brace{"###...", "####..", "..##..", "..##..", "..##..", "..##..", "..###.", "...###", "...###",
        "..###.", "..##..", "..##..", "..##..", "..##..", "####..", "###..."};
    const Art bracket{
        "...#", "..##", ".##.", ".##.", "##..", "##..", "##..", "##..", ".##.", ".##.", "..##", "...#"};
    const Art v{"##.....##", ".##...##.", ".##...##.", "..##.##..", "..##.##..", "...###...", "....#...."};
    const Art katakana{
        ".......##", ".....##..", "...####..", "###..##..", ".....##..", ".....##..", ".....##.."};
    const Art mouth{"##########", "##......##", "##......##", "##......##", "##......##", "##......##",
        "##......##", "##########", "##......##", "##......##"};
    const Art four{
        ".....##.", "....###.", "...#.##.", "..#..##.", ".#...##.", "########", ".....##.", ".....##."};
    const Art u{"##......#", "##......#", "##......#", "##......#", "##......#", "##......#", "##......#",
        "##......#", "##.....##", "##.....#.", ".#######.", "..####..."};
    const Art j{".....##", ".....##", ".....##", ".....##", ".....##", "##...#.", "##...#.", ".#####."};
    const Art bold{"####...####", "#####..####", "######.####", "###########", "###########", "###########",
        "####.######", "####..#####", "####...####"};
    const Art page{"################", "#..............#", "#..............#", "#......##......#",
        "#.....###......#", "#....#.##......#", "#......##......#", "#......##......#", "#......##......#",
        "#......##......#", "#......##......#", "#......##......#", "#..............#", "#..............#",
        "#..............#", "################"};
    for (const Art& art : {x, v, u, j, bold, katakana, mouth, four, page, bracket, brace})
        EXPECT_EQ(lettersIn(art), 1) << art[1];
}

TEST(Drawings, of_another_colour_than_the_label_are_no_letters) {
    Art icon(17, "###.......###");
    icon.front() = icon.back() = "#############";
    const QColor red(200, 30, 30);
    EXPECT_EQ(lettersIn(icon, red), 1);
    EXPECT_EQ(lettersIn(icon, red, 2), 0);
    EXPECT_EQ(lettersIn(icon, Qt::black, 2), 1);
    EXPECT_EQ(lettersIn({icon.begin() + 2, icon.end()}, red, 1), 1) << "such are Chinese signs and a \"Q\"";
}

/// A sign, or an icon that is none.
void frame(Sheet& sheet, const QRect& sign, QColor inside = Qt::white) {
    sheet.fill(sign, Qt::black).fill(sign.adjusted(2, 2, -2, -2), inside);
}

TEST(Drawings, in_a_column_before_the_lines_of_a_menu_are_unread_if_some_are_no_letters) {
    enum class Signs { letters, odd, drawings };
    for (const Signs signs : {Signs::letters, Signs::odd, Signs::drawings}) {
        Sheet menu(240, 110);
        for (int row = 0; row < 3; ++row) {
            const int top = 10 + 26 * row;
            // The last one might be a "D".
            const bool isOdd = signs == Signs::odd && row < 2;
            const bool isDrawing = signs == Signs::drawings && row < 2;
            frame(menu.type({40, top}, 8, 12), isOdd ? QRect(9, top - 2, 15, 16) : QRect(11, top, 9, 12),
                isDrawing ? Qt::black : Qt::white);
        }
        const std::vector<size_t> each(3, signs == Signs::letters ? 9 : 8);
        EXPECT_EQ(Found(menu).letters(), (Counts{each})) << static_cast<int>(signs);
    }
}

TEST(Drawings, in_a_column_are_told_by_the_marks_behind_them_of_which_some_are_no_letters) {
    Sheet menu(240, 110);
    for (int row = 0; row < 3; ++row)
        frame(menu.type({row == 2 ? 52 : 40, 10 + 26 * row}, 8, 12), {10, 10 + 26 * row, 15, 14},
            row == 2 ? Qt::white : Qt::black);
    for (const int y : {64, 70})
        menu.fill({40, y, 8, 2}, Qt::black);  // as "二"
    EXPECT_EQ(Found(menu).letters(), (Counts{{8, 8, 8}}));
}

TEST(Drawings, in_a_row_make_what_is_like_them_one_before_a_label_or_alone) {
    for (const bool areDrawings : {true, false}) {
        Sheet bars(500, 100);
        for (int i = 0; i < 3; ++i) {
            const QColor inside = areDrawings && i < 2 ? Qt::black : Qt::white;
            const int left = 10 + 160 * i;
            frame(bars.type({left + 18, 20}, 5, 10), {left, 18, 12, 14}, inside);
            frame(bars, {left, 70, 14, 16}, inside);
        }
        EXPECT_EQ(Found(bars).letters(),
            areDrawings ? (Counts{{5}, {5}, {5}}) : (Counts{{6}, {6}, {6}, {1}, {1}, {1}}));
    }
}

TEST(Drawings, go_over_from_one_colour_to_another_and_may_have_an_outline) {
    // Legs as thick as those of a sign are no drawing's.
    for (const auto& [step, leg] : {std::pair(0, 11), std::pair(8, 11), std::pair(8, 8)}) {
        Sheet message(200, 80);
        message.type({100, 30}, 6, 10).fill({20, 16, 40, 40}, Qt::black).fill({22, 18, 36, 36}, Qt::white);
        for (int y = 0; y < 32; ++y)
            for (const QRect& part : {QRect(24, 20 + y, leg, 1), QRect(56 - leg, 20 + y, leg, 1)})
                message.fill(part, QColor(100 + step * y / 2, 60, 20));
        message.fill({24 + leg, 20, 32 - 2 * leg, 8}, QColor(100, 60, 20));
        EXPECT_EQ(Found(message).lines.size(), step > 0 && leg > 8 ? 1 : 2) << step << " " << leg;
    }
}

TEST(Drawings, are_two_ticks_of_which_one_is_seen_in_part) {
    Sheet time(160, 40);
    time.type({20, 14}, 5, 8);
    for (const int left : {74, 78})
        for (int i = left == 74 ? -2 : 1; i < 6; ++i)
            time.fill({left + i, 20 - std::abs(i), 1, 2}, Qt::blue);
    time.type({92, 15}, 2, 8);
    EXPECT_EQ(Found(time).letters(), (Counts{{5}, {2}}));
}

TEST(Drawings, are_discs_below_a_field) {
    Sheet settings(200, 100);
    settings.fill({60, 10, 120, 20}, Qt::gray).fill({61, 11, 118, 18}, Qt::white);
    settings.fill({143, 40, 6, 12}, Qt::blue).fill({141, 41, 10, 10}, Qt::blue);
    settings.fill({140, 43, 12, 6}, Qt::blue);
    EXPECT_TRUE(Found(settings).lines.empty());
}

TEST(Drawings, an_i_in_a_disc_is_a_drawing_and_a_figure_none) {
    for (const bool isFigure : {false, true}) {
        Sheet message(200, 60);
        message.type({70, 20}, 6, 12).fill({15, 15, 30, 30}, Qt::blue);
        if (isFigure)
            message.type({26, 24}, 1, 12, Qt::white);
        else
            message.fill({28, 28, 4, 12}, Qt::white).fill({28, 20, 4, 4}, Qt::white);
        EXPECT_EQ(Found(message).lines.size(), isFigure ? 2 : 1);
    }
}

TEST(Drawings, underlines_of_single_letters_mark_keys_and_are_unread) {
    for (const int keys : {1, 2}) {
        Sheet menu(240, 40);
        for (int i = 0; i < keys; ++i)
            menu.fill({40 + 48 * i, 24, 8, 1}, Qt::black);
        const Found found(menu.type({40, 10}, 8, 12));
        ASSERT_EQ(found.lines.size(), 1);
        EXPECT_EQ(found.lines[0].unread.size(), keys == 1 ? 1 : 0);
    }
}

TEST(Drawings, crosses_between_figures_and_in_a_column_are_signs) {
    const auto cross = [](Sheet& sheet, QPoint at) {
        for (int i = 0; i < 8; ++i)
            sheet.fill({at + QPoint(i, i), QSize(1, 1)}, Qt::black)
                .fill({at + QPoint(7 - i, i), QSize(1, 1)}, Qt::black);
    };
    Sheet product(160, 40);
    cross(product.type({20, 12}, 2, 12).type({56, 12}, 2, 12), {43, 15});
    EXPECT_EQ(Found(product).letters(), (Counts{{5}}));
    Sheet answers(160, 80);
    for (const int y : {12, 42})
        cross(answers, {40, y});
    EXPECT_EQ(Found(answers).shapes.shapes.size(), 2);
}

}  // namespace
}  // namespace tralio
