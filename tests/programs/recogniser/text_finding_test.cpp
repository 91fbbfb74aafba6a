#include <array>

#include "programs/recogniser/labels.h"
#include "programs/recogniser/rules.h"
#include "programs/recogniser/sheet.h"
#include "programs/recogniser/work_budget.h"
#include "support/testing.h"

namespace tralio {
namespace {

/// Black boxes on white.
Plane drawn(const std::vector<QRect>& boxes) {
    Plane plane(120, 40, 255);
    for (const QRect& box : boxes)
        for (int y = box.top(); y <= box.bottom(); ++y)
            std::fill_n(plane.row(y) + box.left(), box.width(), 0);
    return plane;
}

/// The same, but for those that are rules.
Plane lettersOf(const std::vector<QRect>& boxes) {
    Plane plane = drawn(boxes);
    const Labels marks = connect(
        plane.width(), plane.height(), Neighbours::eight, [&](size_t i) { return plane.pixels()[i] == 0; },
        [](size_t, size_t) { return true; });
    const std::vector<bool> areRules = findRules(marks, extentsOf(marks), 1);
    for (size_t i = 0; i < marks.of.size(); ++i)
        if (marks.of[i] != Labels::none && areRules[static_cast<size_t>(marks.of[i])])
            plane.pixels()[i] = 255;
    return plane;
}

TEST(Rules, are_told_from_letters) {
    const QRect letter(30, 12, 8, 14);
    const QRect stem(50, 8, 2, 18);
    const QRect dash(60, 18, 20, 2);
    const std::pair<const char*, std::vector<QRect>> cases[] = {
        {"an underline", {{10, 34, 90, 2}}},
        {"a thin frame", {{4, 3, 112, 1}, {4, 3, 1, 33}, {4, 35, 112, 1}, {115, 3, 1, 33}}},
        {"a table's grid",
            {{4, 3, 112, 1}, {4, 28, 112, 1}, {4, 32, 112, 1}, {4, 35, 112, 1}, {4, 3, 1, 33}, {26, 3, 1, 33},
                {84, 3, 1, 33}, {90, 3, 1, 33}, {100, 3, 1, 33}, {115, 3, 1, 33}}},
        {"what lies beside a button", {{0, 0, 9, 40}}},
        {"what lies around a button's corner", {{100, 0, 20, 40}, {20, 0, 100, 4}}},
        {"a caret from top to bottom", {{90, 0, 1, 40}}},
        {"a caret after the text", {{85, 5, 1, 26}}},
        {"the sides of a frame", {{16, 4, 1, 28}, {104, 4, 1, 28}}},
        {"a rounded frame",
            {{40, 3, 36, 1}, {22, 4, 18, 1}, {76, 4, 18, 1}, {21, 5, 1, 26}, {94, 5, 1, 26}, {22, 31, 18, 1},
                {76, 31, 18, 1}, {40, 32, 36, 1}}},
    };
    for (auto [what, boxes] : cases) {
        boxes.insert(boxes.end(), {letter, stem, dash});
        EXPECT_EQ(lettersOf(boxes), drawn({letter, stem, dash})) << what;
    }
    const std::vector<QRect> cutLetters{{30, 0, 8, 14}, {60, 30, 8, 10}};
    const std::vector<QRect> barsAmongLetters{letter, {42, 6, 2, 24}, stem, {90, 8, 2, 18}};
    const std::vector<QRect> lightHeadline{{5, 2, 3, 34}, {5, 34, 41, 3},  // "LO"
        {70, 2, 16, 2}, {62, 4, 8, 2}, {86, 4, 8, 2}, {60, 6, 2, 28}, {94, 6, 2, 28}, {62, 34, 8, 2},
        {86, 34, 8, 2}, {70, 36, 16, 2}};
    for (const std::vector<QRect>& letters : {cutLetters, barsAmongLetters, lightHeadline})
        EXPECT_EQ(lettersOf(letters), drawn(letters));

    const Labels mark{1, 1, {0}, 1};
    EXPECT_TRUE(findRules(mark, {{QRect(5, 5, 7990, 7990), 4 * 7990}}, 1)[0]) << "a frame in a huge picture";
}

TEST(TextFinding, lines_end_at_the_gaps_of_columns_and_not_at_those_of_words_and_signs) {
    Sheet sheet(420, 120);
    for (int row = 0; row < 3; ++row) {
        sheet.type({10, 10 + 20 * row}, 8, 10).type({100, 10 + 20 * row}, 6, 10);  // a blank between them
        sheet.type({220, 10 + 20 * row}, 9, 10);
    }
    EXPECT_EQ(Found(sheet).letters(), (Counts{{14, 14, 14}, {9, 9, 9}}));

    Sheet code(300, 40);
    code.type({10, 10}, 5, 10).type({90, 10}, 6, 10);
    EXPECT_EQ(Found(code).letters(), (Counts{{5}, {6}}));
    code.fill({64, 12, 7, 2}, Qt::black).fill({64, 17, 7, 2}, Qt::black);
    EXPECT_EQ(Found(code).letters(), (Counts{{11}})) << "\"=\" stands there";

    Sheet wide(300, 40);
    wide.type({10, 10}, 1, 12).fill({34, 12, 8, 2}, Qt::black).fill({34, 18, 8, 2}, Qt::black);
    EXPECT_EQ(Found(wide.type({58, 10}, 1, 12)).letters(), (Counts{{2}}))
        << "and is further from low letters";
}

TEST(TextFinding, rows_of_labels_are_cut_and_sentences_are_not) {
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
}

TEST(TextFinding, a_bullet_is_no_letter_and_a_dash_or_a_full_stop_is_no_bullet) {
    for (const auto& [mark, isBullet] : {std::pair(QRect(10, 14, 5, 5), true), {QRect(10, 15, 3, 3), true},
             {QRect(10, 16, 8, 2), false}, {QRect(10, 18, 4, 4), false}, {QRect(19, 14, 5, 5), false}}) {
        Sheet list(300, 40);
        const Found found(list.type({26, 10}, 8, 12).fill(mark, Qt::black));
        ASSERT_EQ(found.lines.size(), 1U);
        EXPECT_EQ(found.lines[0].unread.size(), isBullet ? 1U : 0U);
        EXPECT_EQ(found.lines[0].box.left(), isBullet ? 26 : mark.left());
    }
}

TEST(TextFinding, dots_that_lead_to_a_number_are_shown_to_no_engine) {
    Sheet contents(300, 40);
    contents.type({10, 10}, 5, 12).type({178, 10}, 1, 12).fill({70, 20, 2, 2}, Qt::black);
    for (int x = 77; x < 174; x += 5)
        contents.fill({x, 20, 2, 2}, Qt::black);
    const Found found(contents);
    EXPECT_EQ(found.letters(), (Counts{{5}, {1}}));
    const BlockPainter painter(found.marks, found.shapes, found.blocks);
    const BlockPicture picture = painter.paint(found.blocks[1], found.blocks[1].kind);
    const quint8* row = picture.plane.row(qRound((21 - picture.origin.y()) * picture.scale));
    EXPECT_EQ(std::count_if(row, row + qRound((176 - picture.origin.x()) * picture.scale),
                  [](quint8 ink) { return ink < 200; }),
        0);
    ASSERT_EQ(found.lines[0].dots.size() + found.lines[1].dots.size(), 1U) << "a full stop is read";
}

TEST(TextFinding, letters_that_touch_a_line_or_a_squiggle_beneath_them_are_no_part_of_it) {
    for (const auto& wave : {std::array{0, 0, 0, 0}, std::array{0, 1, 2, 1}}) {
        Sheet sheet(300, 90);
        sheet.type({20, 20}, 12, 12).type({20, 65}, 5, 10);
        for (const int letter : {1, 2, 7})
            sheet.fill({20 + 12 * letter, 32, 2, 5}, Qt::black);
        for (int x = 20; x < 160; ++x)
            sheet.fill({x, 34 + wave[static_cast<size_t>(x % 4)], 1, 1}, Qt::red);
        for (const QRect& side :
            {QRect(8, 58, 70, 1), QRect(8, 58, 1, 24), QRect(77, 58, 1, 24), QRect(8, 81, 70, 1)})
            sheet.fill(side, Qt::black);
        const Found found(sheet);
        EXPECT_EQ(found.letters(), (Counts{{12}, {5}}));
        EXPECT_EQ(found.blocks[0].lines[0].box.bottom(), 36) << "where descenders end";
        const BlockPainter painter(found.marks, found.shapes, found.blocks);
        const BlockPicture picture = painter.paint(found.blocks[0], found.blocks[0].kind);
        const quint8* row = picture.plane.row(qRound((35 - picture.origin.y()) * picture.scale));
        EXPECT_LT(std::count_if(row, row + picture.plane.width(), [](quint8 ink) { return ink < 128; }), 30);
    }
}

TEST(TextFinding, what_is_struck_through_is_text) {
    for (const int line : {24, 26, 28}) {
        Sheet sheet(300, 50);
        sheet.type({20, 20}, 12, 12).fill({18, line, 146, 1}, Qt::black);
        EXPECT_EQ(Found(sheet).letters(), (Counts{{12}})) << line;
    }
}

TEST(TextFinding, what_closes_a_frame_or_a_letter_below_is_no_line_beneath_words) {
    const std::vector<QRect> cutButton{{20, 0, 1, 24}, {250, 0, 1, 24}, {21, 22, 4, 2}, {21, 24, 229, 1}};
    const std::vector<QRect> tableRow{{20, 2, 1, 30}, {130, 2, 1, 30}, {250, 2, 1, 30}, {20, 31, 231, 1}};
    for (const auto& frame : {cutButton, tableRow}) {
        Sheet sheet(300, 80);
        sheet.type({40, 8}, 4, 10).type({150, 8}, 5, 10).type({30, 50}, 7, 10);
        for (const QRect& side : frame)
            sheet.fill(side, Qt::black);
        EXPECT_THAT(Found(sheet).letters(), testing::UnorderedElementsAreArray(Counts{{4}, {5}, {7}}));
    }

    for (const int stem : {7, 17}) {
        Sheet sheet(300, 70);
        for (int x = 20; x < 260; x += 60)
            sheet.fill({x + 19, 20, 8, stem}, Qt::black).fill({x, 20 + stem, 46, 6}, Qt::black);
        EXPECT_EQ(Found(sheet).shapes.shapes.at(0).box, QRect(20, 20, 46, stem + 6));
    }
}

TEST(TextFinding, bands_of_any_height_show_their_text_beside_that_of_the_page) {
    for (int height = 20; height <= 76; height += 4) {
        Sheet sheet(300, 60 + height);
        sheet.type({20, 10}, 12, 10).fill({10, 30, 280, height}, QColor(22, 104, 220));
        sheet.type({40, 30 + height / 2 - 5}, 8, 10, Qt::white).type({20, 40 + height}, 7, 10);
        EXPECT_EQ(Found(sheet).letters(), (Counts{{12}, {8}, {7}})) << height;
    }
}

TEST(TextFinding, a_page_with_a_faint_line_or_the_grain_of_paper_is_a_page_and_no_photograph) {
    Sheet faint(300, 80);
    faint.type({20, 10}, 12, 10).type({20, 32}, 9, 10, QColor(214, 214, 214)).type({20, 54}, 7, 10);
    Sheet grainy(300, 80, QColor(246, 242, 232));
    grainy.type({20, 10}, 12, 10).type({20, 32}, 9, 10).type({20, 54}, 7, 10).addGrain(5);
    for (const Sheet& sheet : {faint, grainy}) {
        const Found found(sheet);
        EXPECT_EQ(found.letters(), (Counts{{12, 9, 7}}));
        EXPECT_FALSE(found.marks.ground().hasShades());
    }
    const Found found(faint);
    const BlockPicture picture =
        BlockPainter(found.marks, found.shapes, found.blocks).paint(found.blocks[0], found.blocks[0].kind);
    const BlockPicture line = picture.strip(30, 44);
    EXPECT_LT(*std::ranges::min_element(line.plane.pixels()), 30) << "for engines it is as dark as they are";
    EXPECT_TRUE(Found(Sheet(300, 80, QColor(128, 128, 128))).lines.empty());

    Sheet leaves(300, 80, QColor(60, 130, 40));
    for (int i = 0; i < 300; ++i)
        leaves.fill({i, 0, 1, 80}, QColor(60 + i % 40, 90 + i % 40, 40));
    EXPECT_TRUE(Found(leaves.addGrain(5)).marks.ground().hasShades());
}

TEST(TextFinding, a_headline_is_no_part_of_the_text_below_and_both_are_scaled_to_one_size) {
    Sheet sheet(700, 260);
    sheet.type({20, 20}, 8, 66);
    for (int row = 0; row < 4; ++row)
        sheet.type({20, 100 + 20 * row}, 30, 9);
    const Found found(sheet);
    EXPECT_EQ(found.letters(), (Counts{{8}, {30, 30, 30, 30}}));
    const BlockPainter painter(found.marks, found.shapes, found.blocks);
    for (const TextBlock& block : found.blocks) {
        const BlockPicture picture = painter.paint(block, block.kind);
        EXPECT_NEAR(block.letterHeight() * picture.scale, 20, 3);
        const QRectF box = picture.inImage(QRectF(10, 10, 10, 10));
        EXPECT_TRUE(block.box.adjusted(-50, -50, 50, 50).contains(box.toRect()))
            << "boxes are the image's again";
    }
}

TEST(TextFinding, no_block_is_enlarged_beyond_what_engines_take) {
    Sheet sheet(16'000, 40);
    sheet.type({20, 15}, 1900, 8);
    const Found found(sheet);
    ASSERT_EQ(found.blocks.size(), 1U);
    EXPECT_EQ(BlockPainter(found.marks, found.shapes, found.blocks)
                  .paint(found.blocks[0], found.blocks[0].kind)
                  .plane.width(),
        32'767);
}

TEST(TextFinding, accents_and_dots_go_with_their_letters) {
    Sheet sheet(300, 90);
    for (int row = 0; row < 2; ++row) {
        const int y = 20 + 30 * row;
        sheet.type({20, y}, 10, 12);
        for (const int letter : {1, 4, 5})
            sheet.fill({21 + 12 * letter, y - 7, 5, 4}, Qt::black);
        sheet.fill({20 + 12 * 7 + 3, y + 15, 2, 2}, Qt::black);
    }
    const Found found(sheet);
    EXPECT_EQ(found.letters(), (Counts{{10, 10}}));
    for (const TextLine& line : found.lines)
        EXPECT_EQ(line.dots.size(), 4U);
}

TEST(TextFinding, takes_its_time_by_the_number_of_marks_and_not_by_their_square) {
    // As many as in a photograph of leaves.
    std::vector<MarkShape> marks;
    std::mt19937 random(1);
    const auto upTo = [&random](unsigned most) { return static_cast<int>(random() % most); };
    for (int i = 0; i < 60'000; ++i)
        marks.push_back({QRect(upTo(4000), upTo(3000), 2 + upTo(20), 2 + upTo(20))});
    const double begun = WorkBudget::processorTime();
    EXPECT_FALSE(findTextLines(marks, 1).empty());
    EXPECT_LT(WorkBudget::processorTime() - begun, 15);
}

}  // namespace
}  // namespace tralio
