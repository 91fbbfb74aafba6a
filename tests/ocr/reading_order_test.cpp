#include "ocr/reading_order.h"

#include <algorithm>
#include <random>

#include "support/testing.h"

namespace tralio {
namespace {

/// A box by its left edge and the height of its centre.
TextObservation line(const QString& name, double x, double midY, double height = 0.02) {
    return {{x, midY - height / 2, 0.1, height}, {name}};
}

std::vector<QString> sorted(std::vector<TextObservation> lines) {
    sortIntoReadingOrder(lines);
    std::vector<QString> names;
    for (const TextObservation& one : lines)
        names.push_back(one.candidates.value(0));
    return names;
}

/// Lines of a page from top to bottom that are well apart, each far enough below the one before.
std::vector<TextObservation> page(int count) {
    std::vector<TextObservation> lines;
    for (int i = 0; i < count; ++i)
        lines.push_back(line(u"p%1"_s.arg(i), 0.5, 2000.0 - i));
    return lines;
}

TEST(ReadingOrder, boxes_on_one_line_go_left_to_right_and_lines_go_top_to_bottom) {
    struct Case {
        const char* what;
        NormalizedRect first;
        NormalizedRect second;
        bool isBefore;
        bool isAfter;
    };
    // Heights of 0.25 make a tolerance of 0.1. Powers of two keep the sums exact where equality counts.
    const Case cases[] = {
        {"further left on one line", {0.1, 0.5, 0.1, 0.25}, {0.2, 0.55, 0.1, 0.25}, true, false},
        {"higher, though further right", {0.9, 0.5, 0.1, 0.25}, {0.1, 0.375, 0.1, 0.25}, true, false},
        {"one line by the mean height", {0.1, 0.0, 0.1, 0.5}, {0.2, 0.375, 0.1, 0.0}, false, true},
        {"the same place", {0.25, 0.5, 0.5, 0.25}, {0.25, 0.5, 0.5, 0.25}, false, false},
        {"the same left edge on one line", {0.25, 0.5, 0.5, 0.25}, {0.25, 0.45, 0.125, 0.25}, false, false},
        {"tiny, as far apart as the least tolerance", {0.5, 0.015, 0.1, 0}, {0.1, 0, 0.1, 0}, false, true},
        {"tiny, a little further apart", {0.5, 0.0151, 0.1, 0}, {0.1, 0, 0.1, 0}, true, false},
        {"a little further apart than the tolerance", {0.5, 0.41, 0.1, 1.0}, {0.1, 0, 0.1, 1.0}, true, false},
        {"as far apart as the tolerance", {0.5, 0.4, 0.1, 1.0}, {0.1, 0, 0.1, 1.0}, false, true},
    };
    for (const Case& given : cases) {
        EXPECT_EQ(readsBefore(given.first, given.second), given.isBefore) << given.what;
        EXPECT_EQ(readsBefore(given.second, given.first), given.isAfter) << given.what;
    }
}

TEST(ReadingOrder, a_staircase_depends_on_the_order_it_came_in) {
    // Neighbours share a line, the outer two do not: there is no order that suits all three pairs.
    const TextObservation a = line(u"A"_s, 0.3, 0.50);
    const TextObservation b = line(u"B"_s, 0.2, 0.49);
    const TextObservation c = line(u"C"_s, 0.1, 0.48);
    EXPECT_THAT(sorted({a, b, c}), ElementsAre(u"B"_s, u"A"_s, u"C"_s));
    EXPECT_THAT(sorted({c, b, a}), ElementsAre(u"C"_s, u"B"_s, u"A"_s));
    EXPECT_THAT(sorted({c, a, b}), ElementsAre(u"A"_s, u"C"_s, u"B"_s));
}

TEST(ReadingOrder, from_64_lines_on_runs_are_found_and_merged) {
    for (const int count : {63, 64, 65, 200, 1000}) {
        std::vector<TextObservation> lines = page(count - 3);
        lines.push_back(line(u"C"_s, 0.1, 0.48));
        lines.push_back(line(u"A"_s, 0.3, 0.50));
        lines.push_back(line(u"B"_s, 0.2, 0.49));
        std::vector<QString> names = sorted(lines);
        names.erase(names.begin(), names.end() - 3);
        // Insertion stops B at C. As a run that goes backwards, A and B are turned round and merged into the
        // page before C.
        if (count < 64)
            EXPECT_THAT(names, ElementsAre(u"A"_s, u"C"_s, u"B"_s)) << count;
        else
            EXPECT_THAT(names, ElementsAre(u"B"_s, u"A"_s, u"C"_s)) << count;
    }
}

TEST(ReadingOrder, a_short_run_is_extended_by_insertion_before_it_is_merged) {
    // 65 lines take runs of at least 33. The first run, going backwards, ends at its second line; insertion
    // then works on the lines up to the 33rd, where it stops B at C as it does in a short list.
    std::vector<TextObservation> lines = page(62);
    std::swap(lines[0], lines[1]);
    const std::vector<TextObservation> stairs{
        line(u"C"_s, 0.1, 1990.48), line(u"A"_s, 0.3, 1990.50), line(u"B"_s, 0.2, 1990.49)};
    lines.insert(lines.begin() + 10, stairs.begin(), stairs.end());
    const std::vector<QString> names = sorted(lines);
    EXPECT_THAT(std::vector(names.begin() + 8, names.begin() + 15),
        ElementsAre(u"p8"_s, u"p9"_s, u"A"_s, u"C"_s, u"B"_s, u"p10"_s, u"p11"_s));
}

TEST(ReadingOrder, holds_for_pages_of_any_size_keeps_what_is_equal_and_loses_and_doubles_nothing) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> anywhere(0, 1);
    for (const int count : {0, 1, 2, 10, 63, 64, 65, 127, 200, 1000}) {
        SCOPED_TRACE(count);
        // Five words a line, jittering less than the tolerance.
        std::vector<TextObservation> clear;
        // Four places, each taken by many boxes that are told apart only by the order they come in.
        std::vector<TextObservation> stacked;
        std::vector<std::vector<QString>> places(4);
        std::vector<TextObservation> crowded;
        std::vector<QString> numbers;
        for (int i = 0; i < count; ++i) {
            const QString name = QString::number(i);
            numbers.push_back(name);
            clear.push_back(line(name, 0.2 * (i % 5), 100 - 0.1 * (i / 5) + 0.002 * (i % 3)));
            const auto place = random() % 4;
            places[place].push_back(name);
            stacked.push_back(line(name, 0.3 * static_cast<double>(place % 2), place < 2 ? 0.8 : 0.2));
            crowded.push_back(line(name, anywhere(random), anywhere(random), 0.05));
        }
        EXPECT_EQ(sorted(clear), numbers);
        std::reverse(clear.begin(), clear.end());
        EXPECT_EQ(sorted(clear), numbers);
        for (int round = 0; round < 5; ++round) {
            std::shuffle(clear.begin(), clear.end(), random);
            EXPECT_EQ(sorted(clear), numbers);
        }
        std::vector<QString> expected;
        for (const auto& names : places)
            expected.insert(expected.end(), names.begin(), names.end());
        EXPECT_EQ(sorted(stacked), expected);
        std::vector<QString> names = sorted(crowded);
        std::sort(names.begin(), names.end());
        std::sort(numbers.begin(), numbers.end());
        EXPECT_EQ(names, numbers);
    }
}

}  // namespace
}  // namespace tralio
