#pragma once

#include <QPromise>
#include <QThreadPool>
#include <qcorofuture.h>
#include <qcorotask.h>

#include <memory>
#include <type_traits>
#include <utility>

namespace tralio {

/// Does what may take its time on another thread, and answers with what came of it; callers resume on their
/// own thread. `work` does not throw.
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
