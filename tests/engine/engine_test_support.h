#pragma once

#include "engine/ai_service.h"
#include "platform/linux/helpers/helper_http_client.h"
#include "support/ending.h"
#include "support/fake_clock.h"
#include "support/noted_idle_limits.h"
#include "support/stand_in_model.h"

namespace tralio {

inline void PrintTo(const AIError& error, std::ostream* out) {
    *out << error.what();
}

/// What an operation told in the end: its result, or its error in the words that the user reads.
inline QString wordsOf(QCoro::Task<QString> task) {
    const auto ending = endingOf(std::move(task));
    return ending.result.value_or(ending.failure);
}

/// The status and the body of a reply, "no HTTP" and the body, or the failure's words.
inline QString wordsOf(QCoro::Task<HttpResponse> task) {
    const auto ending = endingOf(std::move(task));
    if (!ending.result)
        return ending.failure;
    const auto& [status, body] = *ending.result;
    return ((status ? QString::number(*status) : u"no HTTP"_s) + u' ' + QString::fromUtf8(body)).trimmed();
}

/// A service, and a stand-in for the model that its settings point at. Time stands still.
struct EngineTest : testing::Test {
    EngineTest() {
        settings = {standIn.baseURL(), u"custom"_s, u"sk-test"_s, u"test-model"_s, u"Translate."_s};
    }

    QCoro::Task<QString> translate() {
        return service.translate(u"Hello"_s, u"A"_s, u"B"_s, TranslationTone::natural, settings);
    }

    QCoro::Task<QString> testConnection() { return service.testConnection(settings); }

    FakeClock clock;
    StandInModel standIn;
    EndpointSettings settings;
    HelperHttpClient http{QStringLiteral(HTTP_PROGRAM), clock};
    NotedIdleLimits noted{http};
    AIService service{noted};
};

}  // namespace tralio
