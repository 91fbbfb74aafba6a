#pragma once

#include <qcorotask.h>

#include "engine/ai_error.h"
#include "ocr/ocr_error.h"
#include "support/testing.h"

namespace tralio {

/// How an operation ended.
template <typename T>
struct Ending {
    int times = 0;
    std::optional<T> result;
    std::optional<OCRError> error;
    std::optional<AIError> aiError;
    QString failure;  ///< what the user reads, of any error
};

template <typename T>
QCoro::Task<> record(QCoro::Task<T> task, std::shared_ptr<Ending<T>> ending) {
    try {
        ending->result = co_await task;
    } catch (const LocalizedError& error) {
        ending->failure = error.errorDescription();
        if (const auto* ocrError = dynamic_cast<const OCRError*>(&error))
            ending->error = *ocrError;
        if (const auto* aiError = dynamic_cast<const AIError*>(&error))
            ending->aiError = *aiError;
    }
    ++ending->times;
}

/// Starts an operation; what it came to stands in the answer as soon as it has ended.
template <typename T>
std::shared_ptr<Ending<T>> started(QCoro::Task<T> task) {
    auto ending = std::make_shared<Ending<T>>();
    record(std::move(task), ending);
    return ending;
}

/// Runs the event loop until the operation ends. QCoro's own `waitFor` never returns from one that fails.
template <typename T>
Ending<T> endingOf(QCoro::Task<T> task) {
    const auto ending = started(std::move(task));
    EXPECT_TRUE(eventually([&ending] { return ending->times > 0; })) << "the operation never ended";
    return *ending;
}

}  // namespace tralio
