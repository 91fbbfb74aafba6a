#include "common/background.h"

#include <QCoreApplication>

#include <atomic>
#include <mutex>
#include <thread>

namespace tralio::background {
namespace {

/// Held while a result is handed over, and for good once the application ends: a thread that is late waits
/// here until the process is gone. Never destroyed, as such threads outlive static objects.
std::mutex& handOver() {
    static auto& mutex = *new std::mutex;
    return mutex;
}

std::atomic<int> jobs = 0;

}  // namespace

void start(std::function<HandOver()> job) {
    [[maybe_unused]] static const bool isWatched = [] {
        qAddPostRoutine([] { handOver().lock(); });
        return true;
    }();
    ++jobs;
    std::thread([job = std::move(job)] {
        const HandOver handOverResult = job();
        const std::lock_guard lock(handOver());
        handOverResult();
        --jobs;
    }).detach();
}

bool isIdle() {
    return jobs == 0;
}

}  // namespace tralio::background
