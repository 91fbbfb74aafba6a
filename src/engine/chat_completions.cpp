#include "engine/chat_completions.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

#include "common/localized_error.h"
#include "engine/error_page.h"
#include "engine/provider_preset.h"

namespace tralio::chat_completions {
namespace {

using namespace Qt::StringLiterals;

constexpr QStringView endpointTail = u"/chat/completions";
constexpr double translationTemperature = 0.2;
constexpr int connectionTestMaxTokens = 10;

/// One message of the conversation. Throws if the content is not valid UTF-16: Qt's JSON writer would
/// silently replace half a surrogate pair by a question mark, and the user would get the translation of
/// another text.
QJsonObject message(const QString& role, const QString& content) {
    if (!content.isValidUtf16())
        throw LocalizedError(u"Nội dung cần gửi chứa ký tự không hợp lệ."_s);
    return {{u"role"_s, role}, {u"content"_s, content}};
}

QByteArray body(const QString& model, QJsonObject members) {
    if (!model.isValidUtf16())
        throw LocalizedError(u"Tên model chứa ký tự không hợp lệ."_s);
    members.insert(u"model"_s, model);
    members.insert(u"stream"_s, false);
    return QJsonDocument(members).toJson(QJsonDocument::Compact);
}

/// The reply without the thoughts that reasoning models put before it. A reply that was cut off while the
/// model was thinking has only the beginning of a thought, and is returned unchanged; absent if it is a
/// complete thought and nothing else.
std::optional<QString> withoutThoughts(const QString& reply) {
    constexpr QStringView begin = u"<think>";
    constexpr QStringView end = u"</think>";
    if (!reply.startsWith(begin))
        return reply;
    const qsizetype at = reply.indexOf(end, begin.size());
    if (at < 0)
        return reply;
    const QString said = reply.mid(at + end.size()).trimmed();
    return said.isEmpty() ? std::nullopt : std::optional(said);
}

}  // namespace

std::optional<QUrl> buildEndpointURL(const QString& baseURL) {
    QString text = baseURL.trimmed();
    if (text.isEmpty())
        text = ProviderPreset::presets().first().baseURL;
    if (!text.endsWith(endpointTail)) {
        // Not for a scheme alone, which is no address yet: the tail's first word would become its host.
        if (text.endsWith(u'/') && !text.endsWith(u"://"))
            text.chop(1);
        text += endpointTail;
    }
    const QUrl url(text, QUrl::StrictMode);
    if (!url.isValid())
        return std::nullopt;
    return url;
}

QString modelName(const QString& model) {
    const QString trimmed = model.trimmed();
    return trimmed.isEmpty() ? ProviderPreset::presets().first().defaultModel : trimmed;
}

HttpRequest buildRequest(const QUrl& endpoint, const QString& apiKey) {
    HttpRequest request{endpoint, {{"Content-Type", "application/json"}}};
    // A line break in a pasted key must not begin a header of its own.
    QByteArray key = apiKey.trimmed().toUtf8();
    key.removeIf([](char c) { return c == '\r' || c == '\n' || c == '\0'; });
    if (!key.isEmpty())
        request.headers.append({"Authorization", "Bearer " + key});
    return request;
}

QString systemPrompt(const QString& customPrompt, const QString& sourceLang, const QString& targetLang,
    const TranslationTone& tone) {
    return customPrompt + u"\n\nYêu cầu cụ thể cho bản dịch này:\n- Ngôn ngữ nguồn: "_s + sourceLang +
        u"\n- Ngôn ngữ đích: "_s + targetLang + u"\n- Phong cách / Giọng điệu: "_s +
        tone.promptInstruction() +
        u"\n- Quy tắc vàng: Giữ nguyên định dạng đoạn văn, dấu câu, mã code (nếu có). Chỉ trả về kết quả "
        u"dịch trực tiếp, không chào hỏi, không thêm bất kỳ ghi chú nào khác."_s;
}

QByteArray translationBody(const QString& model, const QString& systemPrompt, const QString& text) {
    const QJsonArray messages{message(u"system"_s, systemPrompt), message(u"user"_s, text)};
    return body(model, {{u"messages"_s, messages}, {u"temperature"_s, translationTemperature}});
}

QByteArray connectionTestBody(const QString& model) {
    const QJsonArray messages{message(u"user"_s, u"Ping. Reply with OK only."_s)};
    return body(model, {{u"messages"_s, messages}, {u"max_tokens"_s, connectionTestMaxTokens}});
}

std::optional<QString> replyText(const QByteArray& body) {
    // Anything that is missing or of another type reads as undefined, at every level down to the text.
    const QJsonValue choices = QJsonDocument::fromJson(body).object().value(u"choices"_s);
    if (!choices.isArray())
        return std::nullopt;
    const QJsonArray list = choices.toArray();
    if (!std::all_of(list.begin(), list.end(), [](const QJsonValue& choice) { return choice.isObject(); }))
        return std::nullopt;
    const QJsonValue content = list.at(0)[u"message"_s][u"content"_s];
    if (!content.isString() || !content.toString().isValidUtf16())
        return std::nullopt;
    return withoutThoughts(content.toString().trimmed());
}

std::optional<QString> errorMessage(const QByteArray& body) {
    const QJsonValue message = QJsonDocument::fromJson(body).object().value(u"error"_s)[u"message"_s];
    if (!message.isString())
        return std::nullopt;
    const QString words = error_page::words(message.toString());
    return words.isEmpty() ? message.toString() : words;
}

std::optional<QString> bodyAsMessage(const QByteArray& body) {
    if (!body.isValidUtf8())
        return std::nullopt;
    const QString words = error_page::words(QString::fromUtf8(body));
    return words.isEmpty() && !body.isEmpty() ? std::nullopt : std::optional(words);
}

}  // namespace tralio::chat_completions
