#include "platform/linux/process/end_signals.h"

#include <array>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace tralio {
namespace {

constexpr std::array endSignals = {SIGTERM, SIGINT, SIGHUP};

/// The ends of a pipe: a signal handler may do little more than write to one.
std::array<int, 2> ends = {-1, -1};

void tell(int) {
    static_cast<void>(write(ends[1], "", 1));
}

}  // namespace

EndSignals::EndSignals(std::function<void()> end) : m_end(std::move(end)) {
    if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    m_notifier.setSocket(ends[0]);
    m_notifier.setEnabled(true);
    QObject::connect(&m_notifier, &QSocketNotifier::activated, &m_notifier, [this] {
        char told = 0;
        if (read(ends[0], &told, 1) == 1)
            m_end();
    });
    for (const int number : endSignals) {
        struct sigaction action {};
        sigaction(number, nullptr, &action);
        if (action.sa_handler != SIG_DFL)
            continue;
        action.sa_handler = &tell;
        action.sa_flags = SA_RESETHAND | SA_RESTART;
        sigaction(number, &action, nullptr);
    }
}

EndSignals::~EndSignals() {
    for (const int number : endSignals) {
        struct sigaction action {};
        sigaction(number, nullptr, &action);
        if (action.sa_handler == &tell)
            std::signal(number, SIG_DFL);
    }
    m_notifier.setEnabled(false);
    for (int& descriptor : ends)
        close(std::exchange(descriptor, -1));
}

}  // namespace tralio
