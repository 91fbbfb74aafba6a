
#include <random>
#include <stdexcept>

#include "ocr/ocr_test_support.h"
#include "ocr/reading_order.h"

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
    // Heights of 0.25 make a tolerance of 0.1. Powers of two keep the sums exact where equality counts.
    const std::tuple<const char*, NormalizedRect, NormalizedRect, bool, bool> cases[] = {
        {"further left on one line", {0.1, 0.5, 0.1, 0.25}, {0.2, 0.55, 0.1, 0.25}, true, false},
        {"higher, though further right", {0.9, 0.5, 0.1, 0.25}, {0.1, 0.375, 0.1, 0.25}, true, false},
        {"one line by the mean height", {0.1, 0.0, 0.1, 0.5}, {0.2, 0.375, 0.1, 0.0}, false, true},
        {"the same place", {0.25, 0.5, 0.5, 0.25}, {0.25, 0.5, 0.5, 0.25}, false, false},
        {"tiny, as far apart as the least tolerance", {0.5, 0.015, 0.1, 0}, {0.1, 0, 0.1, 0}, false, true},
        {"tiny, a little further apart", {0.5, 0.0151, 0.1, 0}, {0.1, 0, 0.1, 0}, true, false},
        {"a little further apart than the tolerance", {0.5, 0.41, 0.1, 1.0}, {0.1, 0, 0.1, 1.0}, true, false},
        {"as far apart as the tolerance", {0.5, 0.4, 0.1, 1.0}, {0.1, 0, 0.1, 1.0}, false, true},
    };
    for (const auto& [what, first, second, isBefore, isAfter] : cases) {
        EXPECT_EQ(readsBefore(first, second), isBefore) << what;
        EXPECT_EQ(readsBefore(second, first), isAfter) << what;
    }
}

TEST(ReadingOrder, from_64_lines_on_runs_are_found_extended_and_merged) {
    // A staircase: neighbours share a line, the outer two do not, and no order suits all three pairs.
    const auto stairs = [](double y) {
        return std::vector{
            line(u"C"_s, 0.1, y + 0.48), line(u"A"_s, 0.3, y + 0.5), line(u"B"_s, 0.2, y + 0.49)};
    };
    const auto sortedWith = [](std::vector<TextObservation> lines, int at, const auto& more) {
        lines.insert(lines.begin() + at, more.begin(), more.end());
        return sorted(lines);
    };
    for (const int count : {63, 64, 65, 200, 1000}) {
        const std::vector<QString> names = sortedWith(page(count - 3), count - 3, stairs(0));
        // Insertion stops B at C. As a run that goes backwards, A and B are turned round and merged into the
        // page before C.
        EXPECT_EQ(QStringList(names.end() - 3, names.end()).join(u' '), count < 64 ? u"A C B"_s : u"B A C"_s)
            << count;
    }

    // 65 lines take runs of at least 33. The first run, going backwards, ends at its second line; insertion
    // then works on the lines up to the 33rd, where it stops B at C as it does in a short list.
    std::vector<TextObservation> lines = page(62);
    std::swap(lines[0], lines[1]);
    const std::vector<QString> names = sortedWith(lines, 10, stairs(1990));
    EXPECT_THAT(std::vector(names.begin() + 9, names.begin() + 14),
        ElementsAre(u"p9"_s, u"A"_s, u"C"_s, u"B"_s, u"p10"_s));
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

TextObservation line(double y, QStringList candidates) {
    return {{0.1, y, 0.8, 0.05}, std::move(candidates)};
}

struct OCRServiceTest : testing::Test {
    const Picture image = std::make_shared<MemoryFile>();
    ScriptedRecognizer recognizer;
    OCRService service{recognizer};
};

TEST_F(OCRServiceTest, the_text_is_the_best_candidates_in_reading_order_trimmed_and_joined) {
    recognizer.reads(
        {line(0.1, {u"\u2003 ba  bốn \t"_s}), line(0.3, {}), line(0.5, {u" \n\u00a0"_s, u"second choice"_s}),
            line(0.8, {u" một, "_s, u"mot"_s}), {{0.95, 0.8, 0.1, 0.05}, {u"hai\n"_s}}});
    EXPECT_EQ(endingOf(service.recognizeText(image)).result, u"một,\nhai\nba  bốn"_s);

    const QUrl file = QUrl::fromLocalFile(u"/somewhere/ảnh.png"_s);
    EXPECT_EQ(endingOf(service.recognizeText(file)).result, u"một,\nhai\nba  bốn"_s);
    ASSERT_EQ(recognizer.images.size(), 2U);
    EXPECT_EQ(std::get<Picture>(recognizer.images[0]), image);
    EXPECT_EQ(std::get<QUrl>(recognizer.images[1]), file);
}

TEST_F(OCRServiceTest, the_recogniser_is_asked_for_the_preferred_languages_that_it_knows_in_our_order) {
    const std::pair<std::optional<QStringList>, std::optional<QStringList>> cases[] = {
        {QStringList{u"ru-RU"_s, u"eo"_s, u"ja-JP"_s, u"en-US"_s, u"vi-VN"_s, u"vi-VT"_s},
            QStringList{u"vi-VT"_s, u"vi-VN"_s, u"en-US"_s, u"ja-JP"_s, u"ru-RU"_s}},
        {QStringList{u"EN-us"_s, u"fr"_s, u"de_DE"_s}, std::nullopt}, {QStringList{}, std::nullopt},
        {std::nullopt, std::nullopt}};
    recognizer.reads({line(0.5, {u"x"_s})});
    for (const auto& [supported, asked] : cases) {
        recognizer.supported = supported;
        EXPECT_EQ(endingOf(service.recognizeText(image)).result, u"x"_s);
        EXPECT_EQ(recognizer.requests.back(),
            (RecognitionRequest{RecognitionRequest::Level::accurate, true, asked}));
    }

    std::stop_source gone;
    gone.request_stop();
    EXPECT_FALSE(endingOf(service.recognizeText(image, gone.get_token())).result);
    EXPECT_EQ(recognizer.requests.size(), std::size(cases)) << "a picture that nobody waits for";
}

TEST_F(
    OCRServiceTest, what_is_no_image_never_reaches_the_recogniser_whose_failures_are_told_in_its_own_words) {
    EXPECT_EQ(endingOf(service.recognizeText(Picture())).error, OCRError::invalidImage());
    for (const QUrl& noFile : {QUrl(u"https://example.com/a.png"_s), QUrl()})
        EXPECT_EQ(endingOf(service.recognizeText(noFile)).error, OCRError::invalidImage());
    EXPECT_THAT(recognizer.images, IsEmpty());

    using Lines = std::vector<TextObservation>;
    const std::pair<ScriptedRecognizer::Answer, OCRError> cases[] = {
        {[] { return Lines(); }, OCRError::noTextFound()},
        {[] { return Lines{line(0.5, {})}; }, OCRError::noTextFound()},
        {[] {
             return Lines{line(0.5, {u" \t"_s}), line(0.2, {u""_s, u"x"_s})};
         },
            OCRError::noTextFound()},
        {[]() -> Lines { throw LocalizedError(u"hết %1 bộ nhớ"_s); },
            OCRError::recognitionFailed(u"hết %1 bộ nhớ"_s)},
        {[]() -> Lines { throw std::runtime_error("lỗi"); }, OCRError::recognitionFailed(u"lỗi"_s)},
        {[]() -> Lines { throw OCRError::invalidImage(); }, OCRError::invalidImage()},
    };
    for (const bool isSlow : {false, true}) {
        recognizer.isSlow = isSlow;
        for (const auto& [answer, error] : cases) {
            recognizer.answer = answer;
            EXPECT_EQ(endingOf(service.recognizeText(image)).error, error);
        }
    }
    EXPECT_EQ(OCRError::recognitionFailed(u"a"_s).errorDescription(), u"Lỗi nhận diện chữ trong ảnh: a"_s);
}

TEST_F(OCRServiceTest, each_of_several_recognitions_ends_once_also_after_the_service_is_gone) {
    recognizer.isSlow = true;
    recognizer.reads({line(0.5, {u"x"_s})});
    auto shortLived = std::make_unique<OCRService>(recognizer);
    const auto first = started(shortLived->recognizeText(image));
    const auto second = started(shortLived->recognizeText(QUrl::fromLocalFile(u"/a.png"_s)));
    shortLived.reset();
    EXPECT_TRUE(eventually([&] { return first->times > 0 && second->times > 0; }));
    EXPECT_TRUE(nextTurn());
    EXPECT_EQ(first->times + second->times, 2);
    EXPECT_EQ(first->result, u"x"_s);
}

}  // namespace
}  // namespace tralio
