#include "programs/recogniser/marks/rules.h"

#include "programs/recogniser/pixels/labels.h"
#include "programs/recogniser/pixels/plane.h"
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
    const std::vector<QRect> ring{{28, 2, 12, 1}, {24, 3, 4, 1}, {40, 3, 4, 1}, {22, 4, 2, 1}, {44, 4, 2, 1},
        {21, 5, 1, 3}, {46, 5, 1, 3}, {20, 8, 1, 23}, {47, 8, 1, 23}, {21, 31, 1, 3}, {46, 31, 1, 3},
        {22, 34, 2, 1}, {44, 34, 2, 1}, {24, 35, 4, 1}, {40, 35, 4, 1}, {28, 36, 12, 1}};
    const std::pair<const char*, std::vector<QRect>> cases[] = {
        {"a ring around a figure", ring},
        {"an underline", {{10, 34, 90, 2}}},
        {"a thin frame", {{4, 3, 112, 1}, {4, 3, 1, 33}, {4, 35, 112, 1}, {115, 3, 1, 33}}},
        {"a table's grid",
            {{4, 3, 112, 1}, {4, 28, 112, 1}, {4, 32, 112, 1}, {4, 35, 112, 1}, {4, 3, 1, 33}, {26, 3, 1, 33},
                {84, 3, 1, 33}, {90, 3, 1, 33}, {100, 3, 1, 33}, {115, 3, 1, 33}}},
        {"what lies beside a button", {{0, 0, 9, 40}}},
        {"what lies around a button's corner", {{100, 0, 20, 40}, {20, 0, 100, 4}}},
        {"a pointer in a corner, and its rim", {{112, 30, 8, 1}, {112, 30, 1, 10}, {114, 32, 6, 8}}},
        {"a caret from top to bottom", {{90, 0, 1, 40}}},
        {"a caret after the text", {{85, 5, 1, 26}}},
        {"the edge of a button among letters", {{44, 4, 2, 32}}},
        {"the sides of a frame", {{16, 4, 1, 28}, {104, 4, 1, 28}}},
        {"a rounded frame",
            {{40, 3, 36, 1}, {22, 4, 18, 1}, {76, 4, 18, 1}, {21, 5, 1, 26}, {94, 5, 1, 26}, {22, 31, 18, 1},
                {76, 31, 18, 1}, {40, 32, 36, 1}}},
    };
    for (auto [what, boxes] : cases) {
        boxes.insert(boxes.end(), {letter, stem, dash});
        EXPECT_EQ(lettersOf(boxes), drawn({letter, stem, dash})) << what;
    }
    const std::vector<QRect> cutLetters{{0, 0, 2, 14}, {5, 4, 8, 10}, {30, 0, 8, 14}, {60, 30, 8, 10}};
    const std::vector<QRect> barsAmongLetters{letter, {42, 6, 2, 24}, stem, {90, 8, 2, 18}};
    const std::vector<QRect> lightHeadline{{5, 2, 3, 34}, {5, 34, 41, 3},  // "LO"
        {70, 2, 16, 2}, {62, 4, 8, 2}, {86, 4, 8, 2}, {60, 6, 2, 28}, {94, 6, 2, 28}, {62, 34, 8, 2},
        {86, 34, 8, 2}, {70, 36, 16, 2}};
    std::vector<QRect> filled = ring;  // such as "国"
    filled.emplace_back(26, 9, 16, 20);
    for (const std::vector<QRect>& letters : {cutLetters, barsAmongLetters, lightHeadline, filled})
        EXPECT_EQ(lettersOf(letters), drawn(letters));

    const Labels mark{1, 1, {0}, 1};
    EXPECT_TRUE(findRules(mark, {{QRect(5, 5, 7990, 7990), 4 * 7990}}, 1)[0]) << "a frame in a huge picture";
}

}  // namespace
}  // namespace tralio
