#include "engine/ai_service.h"

#include "engine/engine_test_support.h"

namespace tralio {
namespace {

using AIServiceTest = EngineTest;

TEST_F(AIServiceTest, a_translation_is_one_post_to_the_endpoint_and_its_trimmed_reply) {
    standIn.translatesTo(u"  Xin chào 👋\n"_s);
    settings.apiKey = u" sk-1 "_s;
    settings.model = u" m \n"_s;
    const Outcome outcome = outcomeOf(service.translate(
        u"\n Hello, \n e\u0301! \t"_s, u"Tiếng Anh"_s, u"Tiếng Việt"_s, TranslationTone::formal, settings));
    EXPECT_EQ(outcome.text, u"Xin chào 👋"_s);
    EXPECT_FALSE(outcome.failed);

    ASSERT_EQ(standIn.requests().size(), 1);
    const StandInModel::Request& request = standIn.requests().first();
    EXPECT_EQ(request.method, "POST");
    EXPECT_EQ(request.target, "/v1/chat/completions");
    EXPECT_EQ(request.header("content-type"), "application/json");
    EXPECT_EQ(request.header("authorization"), "Bearer sk-1");
    EXPECT_EQ(request.json[u"model"_s].toString(), u"m"_s);
    EXPECT_EQ(request.userText(), u"Hello, \n e\u0301!"_s);
    EXPECT_THAT(noted.limits, ElementsAre(45s));
}

TEST_F(AIServiceTest,
    a_connection_test_names_the_model_it_reached_and_does_not_read_the_reply_as_a_translation_does) {
    settings.model = u" "_s;
    standIn.replies(StandInReply::withBody(204, {}));
    EXPECT_EQ(outcomeOf(testConnection()).text, u"Kết nối thành công tới model 'kavo/gemini-3.8-flash'!"_s);
    EXPECT_EQ(standIn.requests().last().json[u"model"_s].toString(), u"kavo/gemini-3.8-flash"_s);

    settings.model = u"%1"_s;
    standIn.replies(StandInReply::withBody(200, "no JSON"));
    EXPECT_EQ(outcomeOf(testConnection()).text, u"Kết nối thành công tới model '%1'!"_s);
    EXPECT_THAT(noted.limits, testing::Each(15s));
    EXPECT_EQ(outcomeOf(translate()).aiError, AIError::emptyResponse());
}

TEST_F(AIServiceTest, the_first_thing_that_is_wrong_is_the_one_reported_and_nothing_is_sent) {
    const QString half = QChar(0xdc00);
    const AIError unwritable = AIError::decodingError(u"Không thể mã hóa yêu cầu JSON."_s);
    const QString good = settings.baseURL;
    const std::tuple<QString, QString, QString, QString, std::optional<AIError>> cases[] = {
        {u" \n\u2003 "_s, u"no url"_s, u"openai"_s, {}, std::nullopt},
        {half, u"no url"_s, u"openai"_s, u" "_s, AIError::invalidURL()},
        {half, good, u"openai"_s, u" \n"_s, AIError::missingApiKey()},
        {half, good, u"Ollama"_s, u""_s, AIError::missingApiKey()},
        {half, good, u"my_ollama_2"_s, u" "_s, unwritable},
    };
    for (const auto& [text, baseURL, presetId, apiKey, error] : cases) {
        settings.baseURL = baseURL;
        settings.selectedPresetId = presetId;
        settings.apiKey = apiKey;
        const Outcome outcome =
            outcomeOf(service.translate(text, u"A"_s, u"B"_s, TranslationTone::natural, settings));
        EXPECT_EQ(outcome.aiError, error);
        EXPECT_EQ(outcome.failed, error.has_value());
        EXPECT_EQ(outcome.text.isEmpty(), !outcome.failed);
        if (error && error != unwritable)
            EXPECT_EQ(outcomeOf(testConnection()).aiError, error);
    }
    settings.model = half;
    const Outcome outcome = outcomeOf(testConnection());
    EXPECT_TRUE(outcome.failed);
    EXPECT_EQ(outcome.aiError, std::nullopt) << "the writer's own error is passed on";
    EXPECT_FALSE(outcome.text.isEmpty());
    EXPECT_TRUE(standIn.requests().isEmpty());
}

TEST_F(AIServiceTest, an_error_status_is_told_with_the_best_message_the_reply_has) {
    const QString page =
        u"\n<!DOCTYPE html><html><head><title>502 Bad\n Gateway &amp; co</title></head></html>"_s;
    // The replies, the message in them, and whether a test of the connection tells it as well.
    const std::tuple<StandInReply, QString, bool> cases[] = {
        {StandInReply::error(500, u"quá tải %1"_s), u"quá tải %1"_s, true},
        {StandInReply::error(407, u"m"_s), u"m"_s, true},
        {StandInReply::error(304, u"m"_s), u""_s, false},
        {StandInReply::withBody(502, "Bad\nGateway "), u"Bad\nGateway "_s, false},
        {StandInReply::withBody(502, page.toUtf8()), u"502 Bad Gateway & co"_s, false},
        {StandInReply::withBody(503, {}), u""_s, false},
        {StandInReply::withBody(403, "cut off in a letter: \xe1\xbb"), u"HTTP Status 403"_s, true},
    };
    for (const auto& [reply, message, isInTest] : cases) {
        standIn.replies(reply);
        const QString start = u"Lỗi máy chủ (%1): "_s.arg(reply.status);
        const Outcome translation = outcomeOf(translate());
        EXPECT_EQ(translation.text, start + message);
        ASSERT_TRUE(translation.aiError);
        EXPECT_EQ(translation.aiError->statusCode(), reply.status);
        EXPECT_EQ(outcomeOf(testConnection()).text,
            start + (isInTest ? message : u"HTTP Status %1"_s.arg(reply.status)));
    }
    // Of these the program knows better what they mean.
    const auto expectOwnWords = [this](const StandInReply& reply) {
        standIn.replies(reply);
        const QString words = AIError::httpError(reply.status, {}).errorDescription();
        EXPECT_EQ(outcomeOf(translate()).text, words);
        EXPECT_EQ(outcomeOf(testConnection()).text, words);
    };
    for (const int status : {401, 404, 429})
        expectOwnWords(StandInReply::error(status, u"m"_s));
    StandInReply challenge = StandInReply::error(401, u"m"_s);
    challenge.headers.emplaceBack("WWW-Authenticate", "Basic realm=\"x\"");
    expectOwnWords(challenge);
}

}  // namespace
}  // namespace tralio
