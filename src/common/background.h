#pragma once

#include <QPromise>
#include <QThreadPool>
#include <qcorofuture.h>
#include <qcorotask.h>

#include <memory>
#include <type_traits>
#include <utility>

namespace tralio {

/// Runs `work`, which may take long, on another thread and returns its result; the caller resumes on its own
/// thread. `work` must not throw.
template <typename Work>
[[nodiscard]] QCoro::Task<std::invoke_result_t<Work>> inBackground(Work work) {
    using Result = std::invoke_result_t<Work>;
    const auto promise = std::make_shared<QPromise<Result>>();
    promise->start();
    QThreadPool::globalInstance()->start([promise, work = std::move(work)]() mutable {
        promise->addResult(work());
        promise->finish();
    });
    const QFuture<Result> future = promise->future();
    co_return co_await future;
}

}  // namespace tralio
