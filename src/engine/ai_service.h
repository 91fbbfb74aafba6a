#pragma once

#include <QString>
#include <qcorotask.h>

#include <stop_token>

#include "engine/endpoint_settings.h"
#include "engine/translation_tone.h"

namespace tralio {

class HttpClient;

/// Translates texts with one request each to the endpoint that the user has chosen.
///
/// Nothing is remembered between calls; several may be under way at once. A call may outlive the service, and
/// ends as cancelled when its HTTP client goes. Used from the main thread, where callers resume.
class AIService final {
public:
    explicit AIService(HttpClient& http);

    /// The translation of `text`; a blank text comes back empty without a request. The languages are display
    /// texts and go into the prompt as they are. Fails with an `AIError`; requesting `stop` cancels the
    /// request, which fails as a network error.
    [[nodiscard]] QCoro::Task<QString> translate(QString text, QString sourceLang, QString targetLang,
        TranslationTone tone, EndpointSettings settings, std::stop_token stop = {});

    /// A sentence that tells of success. Fails with an `AIError`, or with another `LocalizedError` where the
    /// request could not be written or did not get through.
    [[nodiscard]] QCoro::Task<QString> testConnection(EndpointSettings settings, std::stop_token stop = {});

private:
    HttpClient& m_http;
};

}  // namespace tralio
