#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <optional>

#include "engine/http_client.h"
#include "engine/translation_tone.h"

/// The chat-completions protocol: builds requests and reads replies. Sends nothing and keeps no state.
namespace tralio::chat_completions {

/// The URL to send requests to, for a base URL as the user typed it; blank means the default endpoint.
/// Nothing if it is not a URL.
[[nodiscard]] std::optional<QUrl> buildEndpointURL(const QString& baseURL);

/// The model's name, trimmed; blank means the default model.
[[nodiscard]] QString modelName(const QString& model);

/// The request without its body. Includes the key unless it is blank.
[[nodiscard]] HttpRequest buildRequest(const QUrl& endpoint, const QString& apiKey);

[[nodiscard]] QString systemPrompt(const QString& customPrompt, const QString& sourceLang,
    const QString& targetLang, const TranslationTone& tone);

/// The bodies of the two kinds of request. Throw a `LocalizedError` if a text in them is not valid Unicode.
[[nodiscard]] QByteArray translationBody(
    const QString& model, const QString& systemPrompt, const QString& text);
[[nodiscard]] QByteArray connectionTestBody(const QString& model);

/// The text of the first choice in a successful reply, trimmed and without the `<think>` block that a
/// reasoning model begins with; nothing if there is none.
[[nodiscard]] std::optional<QString> replyText(const QByteArray& body);

/// The message that a provider put into an error reply; nothing if the body has another form.
[[nodiscard]] std::optional<QString> errorMessage(const QByteArray& body);

/// The body of an error reply that `errorMessage` cannot read: unchanged, or for an HTML page its title or
/// first words; nothing if it is not text.
[[nodiscard]] std::optional<QString> bodyAsMessage(const QByteArray& body);

}  // namespace tralio::chat_completions
