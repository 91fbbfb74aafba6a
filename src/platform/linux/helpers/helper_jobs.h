#pragma once

#include <QFuture>
#include <QObject>
#include <QPromise>

#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <stop_token>
#include <utility>

namespace tralio {

/// The jobs under way with a helper. Each is settled exactly once, by an answer or by a failure, and its
/// awaiter resumes from the event loop. `Details` is what else the owner needs to know about a job.
template <typename Answer, typename Details>
class HelperJobs final {
public:
    using Id = quint32;

    /// Adds a job; ids ascend in the order of arrival. When a stop is requested, on any thread, `onStop` is
    /// called from the event loop of `context`, if that still exists.
    Id add(Details details, const std::stop_token& stop, QObject* context, std::function<void(Id)> onStop) {
        const Id id = ++m_lastId;
        auto job = std::make_unique<Job>(std::move(details));
        job->promise.start();
        job->onStop.emplace(stop, [context, onStop = std::move(onStop), id] {
            QMetaObject::invokeMethod(
                context, [onStop, id] { onStop(id); }, Qt::QueuedConnection);
        });
        m_jobs.emplace(id, std::move(job));
        return id;
    }

    [[nodiscard]] QFuture<Answer> future(Id id) const { return m_jobs.at(id)->promise.future(); }
    [[nodiscard]] bool isEmpty() const { return m_jobs.empty(); }

    /// The details of a job, or null if it is settled.
    [[nodiscard]] Details* find(Id id) {
        const auto found = m_jobs.find(id);
        return found == m_jobs.end() ? nullptr : &found->second->details;
    }
    /// The oldest job that is not settled. There must be one.
    [[nodiscard]] Id first() const { return m_jobs.begin()->first; }

    /// Does nothing if the job is settled already.
    void succeed(Id id, Answer answer) {
        if (const auto job = take(id)) {
            job->promise.addResult(std::move(answer));
            job->promise.finish();
        }
    }
    void fail(Id id, const std::exception_ptr& why) {
        if (const auto job = take(id))
            job->fail(why);
    }
    void failAll(const std::exception_ptr& why) {
        for (const auto& [id, job] : std::exchange(m_jobs, {}))
            job->fail(why);
    }

private:
    struct Job {
        explicit Job(Details of) : details(std::move(of)) {}

        void fail(const std::exception_ptr& why) {
            onStop.reset();
            promise.setException(why);
            promise.finish();
        }

        Details details;
        QPromise<Answer> promise;
        std::optional<std::stop_callback<std::function<void()>>> onStop;
    };

    std::unique_ptr<Job> take(Id id) {
        auto node = m_jobs.extract(id);
        if (node.empty())
            return nullptr;
        node.mapped()->onStop.reset();
        return std::move(node.mapped());
    }

    std::map<Id, std::unique_ptr<Job>> m_jobs;
    Id m_lastId = 0;
};

}  // namespace tralio
