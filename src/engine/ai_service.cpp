#include "engine/ai_service.h"

#include <chrono>

#include "engine/ai_error.h"
#include "engine/chat_completions.h"
#include "engine/http_client.h"
#include "engine/provider_preset.h"
#include "engine/transport_error.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

constexpr auto translationTimeout = 45s;
constexpr auto connectionTestTimeout = 15s;

/// Checks the settings that a request needs, the address before the key.
QUrl requireEndpoint(const EndpointSettings& settings) {
    const std::optional<QUrl> endpoint = chat_completions::buildEndpointURL(settings.baseURL);
    if (!endpoint)
        throw AIError::invalidURL();
    if (ProviderPreset::needsKey(settings.selectedPresetId) && settings.apiKey.trimmed().isEmpty())
        throw AIError::missingApiKey();
    return *endpoint;
}

/// Whether a response is final. A status below 200 only announces one, even if nothing follows.
bool isAnswer(const HttpResponse& response) {
    return response.status >= 200;
}

bool isSuccess(int status) {
    return status >= 200 && status <= 299;
}

QString statusMessage(int status) {
    return u"HTTP Status "_s + QString::number(status);
}

}  // namespace

AIService::AIService(HttpClient& http) : m_http(http) {}

// Neither coroutine may use this object, or the owner of the settings, after the request was sent: both may
// be destroyed by then.

QCoro::Task<QString> AIService::translate(QString text, QString sourceLang, QString targetLang,
    TranslationTone tone, EndpointSettings settings, std::stop_token stop) {
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty())
        co_return QString();

    const QUrl endpoint = requireEndpoint(settings);
    const QString prompt =
        chat_completions::systemPrompt(settings.customPrompt, sourceLang, targetLang, tone);
    QByteArray body;
    try {
        body =
            chat_completions::translationBody(chat_completions::modelName(settings.model), prompt, trimmed);
    } catch (const LocalizedError&) {
        throw AIError::decodingError(u"Không thể mã hóa yêu cầu JSON."_s);
    }

    HttpResponse response;
    try {
        const HttpRequest request = chat_completions::buildRequest(endpoint, settings.apiKey);
        QCoro::Task<HttpResponse> sending = m_http.send(request, body, translationTimeout, stop);
        response = co_await sending;
    } catch (const TransportError& error) {
        throw AIError::networkError(error.errorDescription());
    }
    if (!isAnswer(response))
        throw AIError::networkError(u"Không nhận được phản hồi HTTP hợp lệ."_s);

    const int status = *response.status;
    if (isSuccess(status)) {
        const std::optional<QString> translation = chat_completions::replyText(response.body);
        if (!translation)
            throw AIError::emptyResponse();
        co_return *translation;
    }
    std::optional<QString> message = chat_completions::errorMessage(response.body);
    if (!message)
        message = chat_completions::bodyAsMessage(response.body);
    throw AIError::httpError(status, message.value_or(statusMessage(status)));
}

QCoro::Task<QString> AIService::testConnection(EndpointSettings settings, std::stop_token stop) {
    const QUrl endpoint = requireEndpoint(settings);
    const QString model = chat_completions::modelName(settings.model);
    const QByteArray body = chat_completions::connectionTestBody(model);
    const HttpRequest request = chat_completions::buildRequest(endpoint, settings.apiKey);

    QCoro::Task<HttpResponse> sending = m_http.send(request, body, connectionTestTimeout, stop);
    const HttpResponse response = co_await sending;
    if (!isAnswer(response))
        throw AIError::networkError(u"Không nhận được phản hồi HTTP."_s);

    const int status = *response.status;
    if (isSuccess(status))
        co_return u"Kết nối thành công tới model '"_s + model + u"'!"_s;
    const std::optional<QString> message = chat_completions::errorMessage(response.body);
    throw AIError::httpError(status, message.value_or(statusMessage(status)));
}

}  // namespace tralio
