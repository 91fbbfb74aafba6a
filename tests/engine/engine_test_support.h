#pragma once

#include <qcorotask.h>

#include "engine/ai_error.h"
#include "engine/ai_service.h"
#include "platform/linux/helpers/helper_http_client.h"
#include "support/fake_clock.h"
#include "support/noted_idle_limits.h"
#include "support/stand_in_model.h"
#include "support/testing.h"

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

/// Runs the event loop until the operation ends. QCoro's own `waitFor` never returns from one that fails.
inline Outcome outcomeOf(QCoro::Task<QString> task) {
    Outcome outcome;
    bool ended = false;
    const auto record = [&]() -> QCoro::Task<void> {
        try {
            outcome.text = co_await task;
        } catch (const LocalizedError& error) {
            outcome.failed = true;
            outcome.text = error.errorDescription();
            if (const auto* aiError = dynamic_cast<const AIError*>(&error))
                outcome.aiError = *aiError;
        }
        ended = true;
    };
    const QCoro::Task<void> recording = record();
    EXPECT_TRUE(eventually([&ended] { return ended; })) << "the operation never ended";
    return outcome;
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
