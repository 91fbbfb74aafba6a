#include "engine/chat_completions.h"
#include "engine/engine_test_support.h"
#include "engine/provider_preset.h"

namespace tralio {
namespace {

using AIServiceTest = EngineTest;

TEST_F(AIServiceTest, a_translation_is_one_post_to_the_endpoint_and_its_trimmed_reply) {
    standIn.translatesTo(u"  Xin chào 👋\n"_s);
    settings.apiKey = u" sk-1 "_s;
    settings.model = u" m \n"_s;
    const auto ending = endingOf(service.translate(
        u"\n Hello, \n e\u0301! \t"_s, u"Tiếng Anh"_s, u"Tiếng Việt"_s, TranslationTone::formal, settings));
    EXPECT_EQ(ending.result, u"Xin chào 👋"_s);

    ASSERT_EQ(standIn.requests().size(), 1);
    const StandInModel::Request& request = standIn.requests().first();
    EXPECT_EQ(request.method, "POST");
    EXPECT_EQ(request.target, "/v1/chat/completions");
    EXPECT_EQ(request.header("authorization"), "Bearer sk-1");
    EXPECT_EQ(request.json[u"model"_s].toString(), u"m"_s);
    EXPECT_EQ(request.userText(), u"Hello, \n e\u0301!"_s);
    EXPECT_THAT(noted.limits, ElementsAre(45s));
}

TEST_F(AIServiceTest, a_connection_test_names_the_model_it_reached_and_does_not_read_the_reply) {
    settings.model = u" "_s;
    standIn.replies(StandInReply::withBody(204, {}));
    EXPECT_EQ(wordsOf(testConnection()), u"Kết nối thành công tới model 'kavo/gemini-3.8-flash'!"_s);
    EXPECT_EQ(standIn.requests().last().json[u"model"_s].toString(), u"kavo/gemini-3.8-flash"_s);

    settings.model = u"%1"_s;
    standIn.replies(StandInReply::withBody(200, "no JSON"));
    EXPECT_EQ(wordsOf(testConnection()), u"Kết nối thành công tới model '%1'!"_s);
    EXPECT_THAT(noted.limits, testing::Each(15s));
    EXPECT_EQ(endingOf(translate()).aiError, AIError::emptyResponse());
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
        const auto ending =
            endingOf(service.translate(text, u"A"_s, u"B"_s, TranslationTone::natural, settings));
        EXPECT_EQ(ending.aiError, error);
        EXPECT_EQ(ending.failure.isEmpty(), !error);
        EXPECT_EQ(ending.result, error ? std::nullopt : std::optional(QString()));
        if (error && error != unwritable)
            EXPECT_EQ(endingOf(testConnection()).aiError, error);
    }
    settings.model = half;
    const auto ending = endingOf(testConnection());
    EXPECT_EQ(ending.aiError, std::nullopt) << "the writer's own error is passed on";
    EXPECT_FALSE(ending.failure.isEmpty());
    EXPECT_TRUE(standIn.requests().isEmpty());
}

TEST_F(AIServiceTest, an_error_status_is_told_with_the_best_message_the_reply_has) {
    const QString page =
        u"\n<!DOCTYPE html><html><head><title>502 Bad\n Gateway &amp; co</title></head></html>"_s;
    // The replies, the message in them, and whether a test of the connection tells it as well.
    const std::tuple<StandInReply, QString, bool> cases[] = {
        {StandInReply::error(500, u"quá tải %1"_s), u"quá tải %1"_s, true},
        {StandInReply::error(407, u"m"_s), u"m"_s, true}, {StandInReply::error(304, u"m"_s), u""_s, false},
        {StandInReply::withBody(502, "Bad\nGateway "), u"Bad\nGateway "_s, false},
        {StandInReply::withBody(502, page.toUtf8()), u"502 Bad Gateway & co"_s, false},
        {StandInReply::withBody(503, {}), u""_s, false},
        {StandInReply::withBody(403, "cut off in a letter: \xe1\xbb"), u"HTTP Status 403"_s, true}};
    for (const auto& [reply, message, isInTest] : cases) {
        standIn.replies(reply);
        const QString start = u"Lỗi máy chủ (%1): "_s.arg(reply.status);
        const auto translation = endingOf(translate());
        EXPECT_EQ(translation.failure, start + message);
        ASSERT_TRUE(translation.aiError);
        EXPECT_EQ(translation.aiError->statusCode(), reply.status);
        EXPECT_EQ(
            wordsOf(testConnection()), start + (isInTest ? message : u"HTTP Status %1"_s.arg(reply.status)));
    }
    // One that only announces a reply, of which none came, is no status to tell.
    standIn.replies(StandInReply::withBody(0, "HTTP/1.1 101 Switching Protocols\r\nUpgrade: x\r\n\r\n")
                        .delivered(StandInReply::Delivery::withoutStatus));
    EXPECT_EQ(
        endingOf(translate()).aiError, AIError::networkError(u"Không nhận được phản hồi HTTP hợp lệ."_s));
    EXPECT_EQ(endingOf(testConnection()).aiError, AIError::networkError(u"Không nhận được phản hồi HTTP."_s));
    // Of these the program knows better what they mean.
    const auto expectOwnWords = [this](const StandInReply& reply) {
        standIn.replies(reply);
        const QString words = AIError::httpError(reply.status, {}).errorDescription();
        EXPECT_EQ(wordsOf(translate()), words);
        EXPECT_EQ(wordsOf(testConnection()), words);
    };
    for (const int status : {401, 404, 429})
        expectOwnWords(StandInReply::error(status, u"m"_s));
    StandInReply challenge = StandInReply::error(401, u"m"_s);
    challenge.headers.emplaceBack("WWW-Authenticate", "Basic realm=\"x\"");
    expectOwnWords(challenge);
}

using namespace chat_completions;

TEST(EndpointURLTest, the_tail_is_appended_once_one_slash_makes_way_for_it_and_no_url_gives_none) {
    const std::pair<QString, std::optional<QString>> cases[] = {
        {u"https://a.test/v1"_s, u"https://a.test/v1/chat/completions"_s},
        {u" \t\n\u00a0\u3000https://a.test/v1/\u2029\r\n "_s, u"https://a.test/v1/chat/completions"_s},
        {u"https://a.test/v1//"_s, u"https://a.test/v1//chat/completions"_s},
        {u"https://a.test/x/chat/completions"_s, u"https://a.test/x/chat/completions"_s},
        {u"https://a.test/v1?key=1"_s, u"https://a.test/v1?key=1/chat/completions"_s},
        {u"a.test"_s, u"a.test/chat/completions"_s},
        {u"https://"_s, u"https:///chat/completions"_s},  // which has no host
        {u" \n\t "_s, ProviderPreset::presets().first().baseURL + u"/chat/completions"_s},
        {u"https://a.test/v 1"_s, std::nullopt},
        {u"://"_s, std::nullopt},
    };
    for (const auto& [base, expected] : cases) {
        const auto url = buildEndpointURL(base);
        EXPECT_EQ(url ? std::optional(url->toString()) : std::nullopt, expected) << qPrintable(base);
    }
}

TEST(ErrorPageTest, is_told_by_its_title_or_else_by_what_it_shows_and_never_holds_the_window_up) {
    const std::pair<QByteArray, QString> cases[] = {
        {"<html><TITLE lang=vi>Bad\n Gateway &amp; co</TITLE><p>not this", u"Bad Gateway & co"_s},
        {"<html><titles>no</titles><title/><h1>Sorry</h1>", u"no Sorry"_s},
        {"<html><head><title> </title><b>x</b></head ><header>Sorry</header><style>b{}</style ><p>late",
            u"Sorry late"_s},
        {"<html><!-- <p> --><script>if (a</head>b)</script><p a=\"b\">1 &lt; 2<br/>3", u"1 < 2 3"_s},
        {"<html><title>never closed <p>Sorry", u"never closed Sorry"_s},
        {"<body>" + QByteArray(300, 'a'), QString(200, u'a') + u'…'},
        {"<body>" + QByteArray(199, 'a') + "\U0001F44D\U0001F44D", QString(199, u'a') + u'…'},
        {"<?xml version=\"1.0\"?>\n<!-- a --><!DOCTYPE html PUBLIC \"x\"><title>503</title>", u"503"_s},
        {"<!-- never closed <html>", u"<!-- never closed <html>"_s},
        {"<html><title>Not found &#8211; Site&#x2019;s &hellip; &amp;lt; &nix; &#0; &#xd800;</title>",
            u"Not found – Site’s … &lt; &nix; &#0; &#xd800;"_s},
        {"<headline>text", u"<headline>text"_s},
    };
    for (const auto& [page, words] : cases)
        EXPECT_EQ(bodyAsMessage(page), words) << page.constData();
    EXPECT_EQ(bodyAsMessage("<html><body></body></html>"), std::nullopt);
    for (const QByteArray& part : {"<"_ba, "-->"_ba, "<!---->"_ba, "<?a?>"_ba, "<title>"_ba, "<title"_ba,
             "<!--"_ba, "<head>"_ba, "<head"_ba, "<script></script"_ba, "<style >a"_ba, "&lt;"_ba, " "_ba}) {
        const Stopwatch time;
        (void)bodyAsMessage("<html>" + part.repeated(200'000 / part.size()));
        (void)bodyAsMessage(part.repeated(200'000 / part.size()) + "<html>");
        EXPECT_LT(time.elapsed(), 1000) << part.constData();
    }
}

TEST(RequestTest, the_key_goes_along_unless_it_is_blank_and_cannot_bring_headers_of_its_own) {
    const QUrl endpoint(u"https://a.test/v1/chat/completions"_s);
    const std::pair<QString, QByteArray> cases[] = {{u"  sk-1 \n"_s, "Bearer sk-1"},
        {u"sk-1\r\nX-Injected: yes\nmore\0"_s, "Bearer sk-1X-Injected: yesmore"}, {u" \t\r\n"_s, {}}};
    for (const auto& [key, expected] : cases) {
        const HttpRequest request = buildRequest(endpoint, key);
        decltype(request.headers) headers{{"Content-Type", "application/json"}};
        if (!expected.isEmpty())
            headers.append({"Authorization", expected});
        EXPECT_EQ(request.headers, headers);
    }
}

TEST(RequestBodyTest, has_the_members_that_the_request_needs_and_the_composed_prompt) {
    const QString prompt =
        systemPrompt(u" Be \"good\".\n"_s, u"Tự động phát hiện"_s, u"Tiếng Việt"_s, TranslationTone::concise);
    const QByteArray expected =
        R"({"messages":[{"content":" Be \"good\".\n)"
        R"(\n\nYêu cầu cụ thể cho bản dịch này:)"
        R"(\n- Ngôn ngữ nguồn: Tự động phát hiện)"
        R"(\n- Ngôn ngữ đích: Tiếng Việt)"
        R"(\n- Phong cách / Giọng điệu: Tralio ngắn gọn, súc tích, đi thẳng vào ý chính, loại bỏ các từ đệm )"
        R"(không cần thiết.)"
        R"(\n- Quy tắc vàng: Giữ nguyên định dạng đoạn văn, dấu câu, mã code (nếu có). Chỉ trả về kết quả )"
        R"(dịch trực tiếp, không chào hỏi, không thêm bất kỳ ghi chú nào khác.","role":"system"},)"
        R"({"content":"Nai\u0308ve 👍\tok","role":"user"}],"model":"m/1","stream":false,"temperature":0.2})";
    QByteArray text = expected;
    text.replace(R"(\u0308)", "\u0308");
    EXPECT_EQ(translationBody(u"m/1"_s, prompt, u"Nai\u0308ve 👍\tok"_s), text);

    EXPECT_TRUE(systemPrompt({}, u"A"_s, u"B"_s, TranslationTone::formal).startsWith(u"\n\nYêu cầu"));
    // Texts of the user are no patterns.
    EXPECT_TRUE(systemPrompt(u"%1 %2"_s, u"%3"_s, u"%1"_s, TranslationTone::formal).startsWith(u"%1 %2\n\n"));

    // A test of the connection asks for a short answer, without a prompt.
    EXPECT_EQ(connectionTestBody(u"m/1"_s),
        R"({"max_tokens":10,"messages":[{"content":"Ping. Reply with OK only.","role":"user"}],)"
        R"("model":"m/1","stream":false})");
}

TEST(ReplyTest, the_text_is_read_only_when_every_step_to_it_has_the_right_type) {
    const std::pair<QByteArray, std::optional<QString>> cases[] = {
        {R"({"choices":[{"message":{"content":" \n Xin chào\u0021 \t"}}]})", u"Xin chào!"_s},
        {R"({"choices":[{"message":{"content":"a"}},{"message":{"content":"b"}}],"x":1})", u"a"_s},
        {R"({"choices":[{"message":{"content":" \n\t "}}]})", u""_s},
        {R"({"choices":[{"message":{"content":"\n<think>\nHmm.\n</think>\n\nXin <think>chào</think>"}}]})",
            u"Xin <think>chào</think>"_s},
        {R"({"choices":[{"message":{"content":"<think>Hmm.</think> \n"}}]})", std::nullopt},
        {R"({"choices":[{"message":{"content":"<think>cut off"}}]})", u"<think>cut off"_s},
        {R"({"choices":[{"message":{"content":null}}]})", std::nullopt},
        {"{\"choices\":[{\"message\":{\"content\":\"caf\xe9\"}}]}", std::nullopt},
        {R"({"choices":[{"message":{"content":7}}]})", std::nullopt},
        {R"({"choices":[{"message":"a"}]})", std::nullopt}, {R"({"choices":[]})", std::nullopt},
        {R"({"choices":[{"message":{"content":"a"}},"b"]})", std::nullopt},
        {R"({"choices":{"0":{"message":{"content":"a"}}}})", std::nullopt},
        {R"([{"choices":[{"message":{"content":"a"}}]}])", std::nullopt},
        {R"({"choices":[{"message":{"content":"a"}}]} and more)", std::nullopt}, {"", std::nullopt}};
    for (const auto& [body, expected] : cases)
        EXPECT_EQ(replyText(body), expected) << body.constData();
}

TEST(ReplyTest, an_error_message_is_read_only_from_an_error_object) {
    const std::pair<QByteArray, std::optional<QString>> cases[] = {
        {R"({"error":{"message":" Quota "}})", u" Quota "_s},
        {R"({"error":{"message":"<html><title>Bad Gateway</title>"}})", u"Bad Gateway"_s},
        {R"({"error":{"message":"<html></html>"}})", u"<html></html>"_s},
        {R"({"error":{"message":1}})", std::nullopt}, {R"({"error":"Quota"})", std::nullopt},
        {R"({"message":"Quota"})", std::nullopt}, {"Quota", std::nullopt}};
    for (const auto& [body, expected] : cases)
        EXPECT_EQ(errorMessage(body), expected) << body.constData();
}

}  // namespace
}  // namespace tralio
