#pragma once

#include <QPromise>
#include <qcorofuture.h>
#include <qcorotask.h>

#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

namespace tralio {
namespace background {

using HandOver = std::function<void()>;

/// Calls `job` on a thread of its own, and there what it returns, unless the application has ended meanwhile.
/// Nobody waits for the thread: reading from a server that is gone may never end, and neither the program's
/// end nor other jobs may depend on it.
void start(std::function<HandOver()> job);

/// Whether all jobs have ended and handed over their results.
[[nodiscard]] bool isIdle();

}  // namespace background

/// Runs `work`, which may take long, on another thread and returns its result; the caller resumes on its own
/// thread. `work` must not throw, and has copies of all it needs: it may still run when the program ends.
template <typename Work>
[[nodiscard]] QCoro::Task<std::invoke_result_t<Work>> inBackground(Work work) {
    using Result = std::invoke_result_t<Work>;
    const auto promise = std::make_shared<QPromise<Result>>();
    promise->start();
    background::start([promise, work = std::move(work)]() mutable -> background::HandOver {
        return [promise, result = work()]() mutable {
            promise->addResult(std::move(result));
            promise->finish();
        };
    });
    const QFuture<Result> future = promise->future();
    co_return co_await future;
}

}  // namespace tralio
