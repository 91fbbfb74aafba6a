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

/// How an operation ended, in the words that the user reads.
struct Outcome {
    bool failed = false;
    QString text;  ///< the result, or the error's description
    std::optional<AIError> aiError;
};

inline Outcome outcomeOf(QCoro::Task<QString> task) {
    const auto ending = endingOf(std::move(task));
    return {!ending.result, ending.result.value_or(ending.failure), ending.aiError};
}

/// A service, and a stand-in for the model that its settings point at. Time stands still.
struct EngineTest : testing::Test {
    EngineTest() {
        settings = {standIn.baseURL(), u"custom"_s, u"sk-test"_s, u"test-model"_s, u"Translate."_s};
    }

    QCoro::Task<QString> translate(std::stop_token stop = {}) {
        return service.translate(
            u"Hello"_s, u"Tiếng Anh"_s, u"Tiếng Việt"_s, TranslationTone::natural, settings, stop);
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
