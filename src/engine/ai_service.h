#pragma once

#include <QString>
#include <qcorotask.h>

#include <stop_token>

#include "engine/endpoint_settings.h"
#include "engine/translation_tone.h"

namespace tralio {

class HttpClient;

/// Translates texts, with one request each, through the endpoint that the user has chosen.
///
/// Keeps no state between calls; several may be under way at once. A call may outlive the service, and ends
/// as cancelled when its HTTP client is destroyed. Used from the main thread, where callers resume.
class AIService final {
public:
    explicit AIService(HttpClient& http);

    /// Returns the translation of `text`; for a blank text an empty one, without a request. The languages are
    /// display texts and are put into the prompt unchanged. Fails with an `AIError`; requesting `stop`
    /// cancels the request, which fails as a network error.
    [[nodiscard]] QCoro::Task<QString> translate(QString text, QString sourceLang, QString targetLang,
        TranslationTone tone, EndpointSettings settings, std::stop_token stop = {});

    /// Returns a sentence that reports success. Fails with an `AIError`, or with another `LocalizedError` if
    /// the request could not be written or did not get through.
    [[nodiscard]] QCoro::Task<QString> testConnection(EndpointSettings settings, std::stop_token stop = {});

private:
    HttpClient& m_http;
};

}  // namespace tralio
