#include "ocr/ocr_service.h"

#include <stdexcept>

#include "ocr/ocr_test_support.h"

namespace tralio {
namespace {

TextObservation line(double y, QStringList candidates) {
    return {{0.1, y, 0.8, 0.05}, std::move(candidates)};
}

class OCRServiceTest : public testing::Test {
protected:
    const Picture image = std::make_shared<MemoryFile>();
    ScriptedRecognizer recognizer;
    OCRService service{recognizer};
};

TEST_F(OCRServiceTest, the_text_is_the_best_candidates_in_reading_order_trimmed_and_joined) {
    recognizer.reads({
        line(0.1, {u"\u2003 ba  bốn \t"_s}),
        line(0.3, {}),
        line(0.5, {u" \n\u00a0"_s, u"second choice"_s}),
        line(0.8, {u" một, "_s, u"mot"_s}),
        {{0.95, 0.8, 0.1, 0.05}, {u"hai\n"_s}},
    });
    EXPECT_EQ(endingOf(service.recognizeText(image)).result, u"một,\nhai\nba  bốn"_s);

    const QUrl file = QUrl::fromLocalFile(u"/somewhere/ảnh.png"_s);
    EXPECT_EQ(endingOf(service.recognizeText(file)).result, u"một,\nhai\nba  bốn"_s);
    ASSERT_EQ(recognizer.images.size(), 2U);
    EXPECT_EQ(std::get<Picture>(recognizer.images[0]), image);
    EXPECT_EQ(std::get<QUrl>(recognizer.images[1]), file);
}

TEST_F(OCRServiceTest, the_recogniser_is_asked_for_the_preferred_languages_that_it_knows_in_our_order) {
    struct Case {
        std::optional<QStringList> supported;
        std::optional<QStringList> asked;
    };
    const Case cases[] = {
        {QStringList{u"ru-RU"_s, u"eo"_s, u"ja-JP"_s, u"en-US"_s, u"vi-VN"_s, u"vi-VT"_s},
            QStringList{u"vi-VT"_s, u"vi-VN"_s, u"en-US"_s, u"ja-JP"_s, u"ru-RU"_s}},
        {QStringList{u"EN-us"_s, u"fr"_s, u"de_DE"_s}, std::nullopt},
        {QStringList{}, std::nullopt},
        {std::nullopt, std::nullopt},
    };
    recognizer.reads({line(0.5, {u"x"_s})});
    for (const Case& given : cases) {
        recognizer.supported = given.supported;
        EXPECT_EQ(endingOf(service.recognizeText(image)).result, u"x"_s);
        EXPECT_EQ(recognizer.requests.back(),
            (RecognitionRequest{RecognitionRequest::Level::accurate, true, given.asked}));
    }
}

TEST_F(OCRServiceTest, lines_that_say_nothing_are_no_text) {
    for (const std::vector<TextObservation>& observations : {std::vector<TextObservation>{}, {line(0.5, {})},
             {line(0.5, {u" \t"_s}), line(0.2, {u""_s, u"x"_s})}}) {
        recognizer.reads(observations);
        const auto ending = endingOf(service.recognizeText(image));
        EXPECT_EQ(ending.error, OCRError::noTextFound());
        EXPECT_FALSE(ending.result);
    }
}

TEST_F(OCRServiceTest, what_is_no_image_never_reaches_the_recogniser) {
    EXPECT_EQ(endingOf(service.recognizeText(Picture())).error, OCRError::invalidImage());
    EXPECT_EQ(endingOf(service.recognizeText(QUrl(u"https://example.com/a.png"_s))).error,
        OCRError::invalidImage());
    EXPECT_EQ(endingOf(service.recognizeText(QUrl())).error, OCRError::invalidImage());
    EXPECT_THAT(recognizer.images, IsEmpty());
}

TEST_F(OCRServiceTest, a_failure_is_told_with_the_recognisers_own_words) {
    struct Case {
        ScriptedRecognizer::Answer answer;
        OCRError error;
    };
    const Case cases[] = {
        {[]() -> std::vector<TextObservation> { throw LocalizedError(u"hết %1 bộ nhớ"_s); },
            OCRError::recognitionFailed(u"hết %1 bộ nhớ"_s)},
        {[]() -> std::vector<TextObservation> { throw std::runtime_error("lỗi"); },
            OCRError::recognitionFailed(u"lỗi"_s)},
        {[]() -> std::vector<TextObservation> { throw OCRError::invalidImage(); }, OCRError::invalidImage()},
    };
    for (const bool isSlow : {false, true}) {
        recognizer.isSlow = isSlow;
        for (const Case& given : cases) {
            recognizer.answer = given.answer;
            EXPECT_EQ(endingOf(service.recognizeText(image)).error, given.error);
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
    EXPECT_EQ(first->times, 1);
    EXPECT_EQ(second->times, 1);
    EXPECT_EQ(first->result, u"x"_s);
}

}  // namespace
}  // namespace tralio
