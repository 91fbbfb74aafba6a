#include "programs/recogniser/sheet.h"
#include "support/testing.h"

namespace tralio {
namespace {

TEST(LabelRows, rows_of_labels_are_cut_and_sentences_are_not) {
    const auto words = [](Sheet& sheet, const std::vector<int>& places) {
        for (const int x : places)
            sheet.type({x, 10}, 1, 15)
                .type({x + 11, 19}, 1, 6)
                .type({x + 16, 19}, 1, 6)
                .type({x + 21, 10}, 1, 15);
    };
    Sheet menu(420, 40);
    words(menu, {10, 47, 98, 135, 186, 223});
    EXPECT_EQ(Found(menu).letters(), (Counts{{8}, {8}, {8}}));
    Sheet sentence(420, 40);
    words(sentence, {10, 47, 84, 121, 158, 195, 246});
    EXPECT_EQ(Found(sentence).letters(), (Counts{{28}}));
    Sheet doubleBlanks(300, 40);  // whose letters stand apart as much as those of "ll"
    for (int x = 10; x < 200; x += 38)
        doubleBlanks.type({x, 10}, 1, 10).type({x + 8, 10}, 1, 10).type({x + 16, 10}, 1, 10);
    EXPECT_EQ(Found(doubleBlanks).letters(), (Counts{{15}}));
    Sheet code(300, 40);  // with quotes, each of which is two marks
    for (const int x : {10, 17, 24, 178, 185, 192})
        code.fill({x, 10, 1, 5}, Qt::black).fill({x + 2, 10, 1, 5}, Qt::black);
    for (const auto& [x, count] : {std::pair(38, 6), {87, 3}, {115, 2}, {136, 1}, {150, 3}})
        code.type({x, 13}, count, 7);
    code.type({30, 10}, 1, 10).type({170, 10}, 1, 10);
    EXPECT_EQ(Found(code).letters(), (Counts{{29}}));
}

TEST(LabelRows, lines_end_at_narrow_gaps_where_those_above_and_below_have_one) {
    const auto found = [](int rows) {
        Sheet table(300, 120);
        for (int y = 10; y < 10 + 22 * rows; y += 22)
            for (const auto& [x, count] : {std::pair(10, 2), {33, 2}, {64, 3}, {98, 2}})
                table.type({x, y}, count, 10);
        return Found(table).letters();
    };
    EXPECT_EQ(found(3), (Counts{{4, 4, 4}, {5, 5, 5}}));
    EXPECT_EQ(found(2), (Counts{{9, 9}}));
}

TEST(LabelRows, a_small_time_behind_a_text_is_a_line_of_its_own) {
    struct Case {
        int top;
        int height;
        bool isTime;
        bool hasColon = true;
        int left = 126;
    };
    for (const auto& [top, height, isTime, hasColon, left] : {Case{16, 8, true}, {17, 9, true},
             {12, 12, false}, {13, 11, false}, {16, 8, false, false}, {16, 8, false, true, 114}}) {
        Sheet bubble(300, 40);
        for (const auto& [x, count] : {std::pair(10, 2), {37, 3}, {76, 3}})
            bubble.type({x, 12}, count, 12);
        bubble.type({left, top}, 2, height).type({left + 4 + 2 * height, top}, 2, height);
        if (hasColon)
            for (const int y : {3, height - 2})
                bubble.fill({left + 2 * height, top + y, 2, 2}, Qt::black);
        EXPECT_EQ(Found(bubble).letters(), isTime ? (Counts{{8}, {4}}) : (Counts{{12}}))
            << height << ' ' << hasColon << ' ' << left;
    }
}

}  // namespace
}  // namespace tralio
