#include <array>
#include <cmath>

#include "programs/recogniser/marks/outlined_letters.h"
#include "programs/recogniser/reading/work_budget.h"
#include "programs/recogniser/sheet.h"
#include "support/testing.h"

namespace tralio {
namespace {

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

TEST(TextFinding, rules_small_frames_a_large_plus_and_what_the_picture_cuts_off_are_no_lines) {
    Sheet list(200, 120);
    list.type({60, 20}, 6, 10).fill({140, 60, 2, 26}, Qt::black).fill({0, 90, 3, 9}, Qt::black);
    list.fill({100, 60, 9, 9}, Qt::black).fill({102, 62, 5, 5}, Qt::white);
    list.fill({60, 65, 12, 2}, Qt::black).fill({65, 60, 2, 12}, Qt::black);
    EXPECT_EQ(Found(list).letters(), (Counts{{6}}));
}

TEST(TextFinding, dots_at_the_foot_of_a_sign_are_of_its_line) {
    Sheet sheet(300, 60);
    sheet.type({10, 10}, 3, 24).fill({82, 10, 18, 15}, Qt::black).type({106, 10}, 3, 24);
    for (int x = 80; x < 102; x += 6)
        sheet.fill({x, 28, 4, 5}, Qt::black);
    EXPECT_EQ(Found(sheet).letters(), (Counts{{7}}));
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

TEST(TextFinding, an_icon_is_no_letter_and_takes_none_from_a_line_beside_it) {
    for (const auto& [mark, isIcon] :
        {std::pair(QRect(10, 6, 18, 19), true), {QRect(10, 6, 18, 16), false}, {QRect(18, 6, 18, 19), false},
            {QRect(10, 10, 10, 15), false}, {QRect(10, 8, 16, 12), true}, {QRect(10, 10, 16, 12), false},
            {QRect(10, 10, 14, 12), false}, {QRect(10, 11, 19, 11), false}}) {
        Sheet menu(300, 40);
        menu.type({40, 10}, 8, 12).fill(mark, Qt::black).fill(mark.adjusted(2, 2, -2, -2), Qt::white);
        const Found found(menu);
        ASSERT_EQ(found.lines.size(), 1U);
        EXPECT_EQ(found.lines[0].letters.size(), isIcon ? 8U : 9U);
        EXPECT_EQ(found.lines[0].box.left(), isIcon ? 40 : mark.left());
    }
    Sheet dialog(400, 60);
    dialog.type({30, 10}, 1, 30).type({60, 16}, 5, 8).type({100, 12}, 1, 12).type({112, 16}, 9, 8);
    EXPECT_EQ(Found(dialog).letters(), (Counts{{1}, {15}}));
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

TEST(TextFinding, bands_of_any_height_and_pills_show_their_text_beside_that_of_the_page) {
    for (int height = 20; height <= 76; height += 4) {
        Sheet sheet(300, 60 + height);
        sheet.type({20, 10}, 12, 10).fill({10, 30, 280, height}, QColor(22, 104, 220));
        sheet.type({40, 30 + height / 2 - 5}, 8, 10, Qt::white).type({20, 40 + height}, 7, 10);
        sheet.fill({146, 7, 17, 16}, Qt::red).type({152, 11}, 1, 8, Qt::white);
        EXPECT_EQ(Found(sheet).letters(), (Counts{{12}, {1}, {8}, {7}})) << height;
    }
    Sheet disc(100, 60);
    for (int y = -15; y < 15; ++y) {
        const int half = static_cast<int>(std::sqrt(15 * 15 - y * y) * 1.2);
        disc.fill({40 - half, 30 + y, 2 * half, 1}, QColor(22, 104, 220));
    }
    const Found page(disc.type({36, 24}, 1, 12, Qt::white));
    EXPECT_EQ(page.letters(), (Counts{{1}}));
    EXPECT_EQ(page.lines[0].box, QRect(36, 24, 8, 12)) << "of a page in a disc";
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

    // Of so many eighths of a level from one pixel to the next: a page, and buttons on one.
    for (const auto& [area, across, down] :
        {std::tuple(QRect(0, 0, 300, 80), 1, 0), {{12, 12, 120, 50}, 13, 0}, {{12, 12, 120, 50}, 0, 25}}) {
        Sheet dithered(300, 80);
        for (int x = area.left(); x <= area.right(); ++x)
            for (int y = area.top(); y <= area.bottom(); ++y)
                dithered.fill(
                    {x, y, 1, 1}, QColor(40, 50 + (x * across + y * down + (x * 5 + y * 3) % 8) / 8, 200));
        const Found gradient(dithered.type({20, 32}, 9, 10, Qt::white));
        EXPECT_EQ(gradient.letters(), (Counts{{9}})) << across << ' ' << down;
        EXPECT_FALSE(gradient.marks.ground().hasShades());
    }

    Sheet glossy(300, 60);  // the lower half of the title bar begins darker
    for (int y = 0; y < 18; ++y)
        glossy.fill({0, 10 + y, 300, 1}, QColor(150 - y - 5 * int(y > 8), 185 - y - 3 * int(y > 7), 225 - y));
    const Found title(glossy.type({90, 14}, 9, 10, Qt::white));
    ASSERT_EQ(title.letters(), (Counts{{9}}));
    EXPECT_EQ(title.lines[0].letterHeight(), 10) << "not what shows inside the letters";
}

TEST(TextFinding, what_lies_in_a_photograph_inside_a_page_is_of_the_photograph) {
    Sheet sheet(360, 240);
    sheet.type({20, 10}, 12, 10).type({20, 210}, 9, 10);
    const QRect photograph(20, 30, 260, 160);
    std::mt19937 random(2);
    const auto upTo = [&random](
                          int most) { return static_cast<int>(random() % static_cast<unsigned>(most)); };
    for (int i = 0; i < 3000; ++i)
        sheet.fill(QRect(20 + upTo(256), 30 + upTo(156), 4 + upTo(10), 4 + upTo(10)) & photograph,
            QColor(40 + upTo(60), 60 + upTo(120), 20 + upTo(60)));
    for (int i = 0; i < 6; ++i)
        sheet.fill({60 + 20 * i, 90, 12, 18}, Qt::black)
            .fill({62 + 20 * i, 92, 8, 14}, Qt::white)
            .fill({64 + 20 * i, 94, 4, 10}, Qt::black);
    sheet.fill({200, 196, 160, 44}, Qt::black).type({216, 210}, 9, 12, Qt::white);
    const Found found(sheet);
    for (const MarkShape& shape : found.shapes.shapes)
        EXPECT_EQ(shape.isShaded, photograph.contains(shape.box));
    EXPECT_GE(std::ranges::count(found.shapes.shapes, regionOfOutlined, &MarkShape::region), 6);
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

TEST(TextFinding, giant_letters_are_no_areas_and_their_ink_is_no_ground) {
    Sheet sheet(700, 220);
    sheet.type({20, 180}, 7, 10);
    for (int x = 40; x < 600; x += 120) {
        sheet.fill({x, 40, 26, 100}, Qt::black);                                              // "l"
        sheet.fill({x + 40, 40, 26, 100}, Qt::black).fill({x + 66, 114, 40, 26}, Qt::black);  // "L"
    }
    EXPECT_EQ(Found(sheet).letters(), (Counts{{10}, {7}}));
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
    MarkShapes found;
    std::mt19937 random(1);
    const auto upTo = [&random](unsigned most) { return static_cast<int>(random() % most); };
    for (int i = 0; i < 60'000; ++i)
        found.shapes.push_back({QRect(upTo(4000), upTo(3000), 2 + upTo(20), 2 + upTo(20))});
    for (size_t i = 0; i < found.shapes.size(); i += 3)
        found.drawings.push_back(found.shapes[i].box.translated(-20, 0));
    const double begun = WorkBudget::processorTime();
    EXPECT_FALSE(findTextLines(found, 1).empty());
    EXPECT_LT(WorkBudget::processorTime() - begun, 15);
}

}  // namespace
}  // namespace tralio
