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
    EXPECT_TRUE(request.systemPrompt().startsWith(u"Translate.\n\n"_s));
    EXPECT_TRUE(request.systemPrompt().contains(TranslationTone::formal.promptInstruction()));
    EXPECT_THAT(noted.limits, testing::ElementsAre(45s));
}

TEST_F(AIServiceTest, a_connection_test_names_the_model_it_reached_and_does_not_read_the_reply) {
    settings.model = u" "_s;
    standIn.replies(StandInReply::withBody(204, {}));
    EXPECT_EQ(outcomeOf(testConnection()).text, u"Kết nối thành công tới model 'kavo/gemini-3.8-flash'!"_s);
    EXPECT_EQ(standIn.requests().last().json[u"model"_s].toString(), u"kavo/gemini-3.8-flash"_s);

    settings.model = u"%1"_s;
    standIn.replies(StandInReply::withBody(200, "no JSON"));
    EXPECT_EQ(outcomeOf(testConnection()).text, u"Kết nối thành công tới model '%1'!"_s);
    EXPECT_THAT(noted.limits, testing::Each(15s));
}

TEST_F(AIServiceTest, the_first_thing_that_is_wrong_is_the_one_reported_and_nothing_is_sent) {
    const QString half = QChar(0xdc00);
    const auto with = [this](const QString& baseURL, const QString& presetId, const QString& apiKey) {
        EndpointSettings changed = settings;
        changed.baseURL = baseURL;
        changed.selectedPresetId = presetId;
        changed.apiKey = apiKey;
        return changed;
    };
    struct Case {
        QString text;
        EndpointSettings settings;
        std::optional<AIError> error;
    };
    const QString good = settings.baseURL;
    const Case cases[] = {
        {u" \n\u2003 "_s, with(u"no url"_s, u"openai"_s, {}), std::nullopt},
        {half, with(u"no url"_s, u"openai"_s, u" "_s), AIError::invalidURL()},
        {half, with(good, u"openai"_s, u" \n"_s), AIError::missingApiKey()},
        {half, with(good, u"Ollama"_s, u""_s), AIError::missingApiKey()},
        {half, with(good, u"ollama"_s, u""_s), AIError::decodingError(u"Không thể mã hóa yêu cầu JSON."_s)},
    };
    for (const Case& given : cases) {
        const Outcome outcome = outcomeOf(
            service.translate(given.text, u"A"_s, u"B"_s, TranslationTone::natural, given.settings));
        EXPECT_EQ(outcome.aiError, given.error);
        EXPECT_EQ(outcome.failed, given.error.has_value());
        EXPECT_EQ(outcome.text.isEmpty(), !outcome.failed);
    }

    EXPECT_EQ(outcomeOf(service.testConnection(cases[1].settings)).aiError, AIError::invalidURL());
    EXPECT_EQ(outcomeOf(service.testConnection(cases[2].settings)).aiError, AIError::missingApiKey());
    settings.model = half;
    const Outcome unwritable = outcomeOf(testConnection());
    EXPECT_TRUE(unwritable.failed);
    EXPECT_EQ(unwritable.aiError, std::nullopt) << "the writer's own error is passed on";
    EXPECT_FALSE(unwritable.text.isEmpty());

    EXPECT_TRUE(standIn.requests().isEmpty());
}

TEST_F(AIServiceTest, a_local_server_needs_no_key_and_is_sent_none) {
    settings.selectedPresetId = u"my_ollama_2"_s;
    settings.apiKey = u" "_s;
    EXPECT_FALSE(outcomeOf(translate()).failed);
    EXPECT_FALSE(outcomeOf(testConnection()).failed);
    for (const StandInModel::Request& request : standIn.requests())
        EXPECT_TRUE(request.header("Authorization").isNull());
    EXPECT_EQ(standIn.requests().size(), 2);
}

TEST_F(AIServiceTest, a_status_that_only_announces_an_answer_is_none) {
    standIn.replies(StandInReply::withBody(
        0, "HTTP/1.1 101 Switching Protocols\r\nUpgrade: h2c\r\nConnection: Upgrade\r\n\r\n")
                        .delivered(StandInReply::Delivery::withoutStatus));
    for (const Outcome& outcome : {outcomeOf(translate()), outcomeOf(testConnection())}) {
        EXPECT_TRUE(outcome.failed);
        EXPECT_FALSE(outcome.text.trimmed().endsWith(u':')) << outcome.text.toStdString();
        EXPECT_FALSE(outcome.text.contains(u"101")) << outcome.text.toStdString();
    }
}

TEST_F(AIServiceTest, an_error_status_is_told_with_the_best_message_the_reply_has) {
    struct Case {
        StandInReply reply;
        QString translation;
        QString connectionTest;
    };
    const QString key = AIError::httpError(401, {}).errorDescription();
    const QString path = AIError::httpError(404, {}).errorDescription();
    const QString limit = AIError::httpError(429, {}).errorDescription();
    const Case cases[] = {
        {StandInReply::error(500, u"quá tải %1"_s), u"Lỗi máy chủ (500): quá tải %1"_s,
            u"Lỗi máy chủ (500): quá tải %1"_s},
        {StandInReply::withBody(502, "Bad\nGateway "), u"Lỗi máy chủ (502): Bad\nGateway "_s,
            u"Lỗi máy chủ (502): HTTP Status 502"_s},
        {StandInReply::withBody(502,
             "\n<!DOCTYPE html><html><head><title>502 Bad\n Gateway &amp; co</title>"
             "<style>b{}</style></head><body><h1>Sorry</h1></body></html>"),
            u"Lỗi máy chủ (502): 502 Bad Gateway & co"_s, u"Lỗi máy chủ (502): HTTP Status 502"_s},
        {StandInReply::withBody(504, "<HTML><script>if (a<b) x()</script><h1>Too</h1><p>late</p></HTML>"),
            u"Lỗi máy chủ (504): Too late"_s, u"Lỗi máy chủ (504): HTTP Status 504"_s},
        {StandInReply::withBody(503, {}), u"Lỗi máy chủ (503): "_s, u"Lỗi máy chủ (503): HTTP Status 503"_s},
        {StandInReply::withBody(403, "cut off in a letter: \xe1\xbb"),
            u"Lỗi máy chủ (403): HTTP Status 403"_s, u"Lỗi máy chủ (403): HTTP Status 403"_s},
        {StandInReply::error(304, u"m"_s), u"Lỗi máy chủ (304): "_s, u"Lỗi máy chủ (304): HTTP Status 304"_s},
        {StandInReply::error(401, u"m"_s), key, key},
        {StandInReply::error(404, u"m"_s), path, path},
        {StandInReply::error(429, u"m"_s), limit, limit},
        {StandInReply::error(407, u"m"_s), u"Lỗi máy chủ (407): m"_s, u"Lỗi máy chủ (407): m"_s},
    };
    for (const Case& given : cases) {
        standIn.replies(given.reply);
        const Outcome translation = outcomeOf(translate());
        EXPECT_EQ(translation.text, given.translation);
        ASSERT_TRUE(translation.aiError);
        EXPECT_EQ(translation.aiError->statusCode(), given.reply.status);
        EXPECT_EQ(outcomeOf(testConnection()).text, given.connectionTest);
    }
    StandInReply challenge = StandInReply::error(401, u"m"_s);
    challenge.headers.emplaceBack("WWW-Authenticate", "Basic realm=\"x\"");
    standIn.replies(challenge);
    EXPECT_EQ(outcomeOf(translate()).text, key);
}

}  // namespace
}  // namespace tralio
