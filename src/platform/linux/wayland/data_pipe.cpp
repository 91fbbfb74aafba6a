#include "platform/linux/wayland/data_pipe.h"

#include <QSocketNotifier>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>
#include <utility>

namespace tralio {
namespace {

void closeOnce(int& fd) {
    if (fd >= 0)
        close(std::exchange(fd, -1));
}

}  // namespace

DataPipeReader::DataPipeReader() {
    std::array<int, 2> ends{-1, -1};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        return;
    m_readEnd = ends[0];
    m_writeEnd = ends[1];
}

DataPipeReader::~DataPipeReader() {
    closeOnce(m_readEnd);
    closeOnce(m_writeEnd);
}

void DataPipeReader::closeWriteEnd() {
    closeOnce(m_writeEnd);
}

std::optional<QByteArray> DataPipeReader::read(qsizetype most, QDeadlineTimer deadline) const {
    QByteArray all;
    const bool isWhole = read(most, deadline, [&all](QByteArrayView piece) { all += piece; });
    return isWhole ? std::optional(all) : std::nullopt;
}

bool DataPipeReader::read(
    qsizetype most, QDeadlineTimer deadline, const std::function<void(QByteArrayView)>& take) const {
    std::array<char, 64 * 1024> part;
    for (qsizetype size = 0; size <= most;) {
        pollfd readable{m_readEnd, POLLIN, 0};
        const int ready = poll(&readable, 1, static_cast<int>(deadline.remainingTime()));
        if (ready < 0 && errno == EINTR)
            continue;  // interrupted by a signal, such as the one after the whole program was stopped
        if (ready <= 0)
            return false;
        const auto wanted = std::min(size_t(most + 1 - size), part.size());
        const ssize_t count = ::read(m_readEnd, part.data(), wanted);
        if (count == 0)
            return true;
        if (count < 0 && errno != EINTR)
            return false;
        if (count > 0)
            take(QByteArrayView(part.data(), count));
        size += std::max<ssize_t>(count, 0);
    }
    return true;
}

DataPipeWriter::DataPipeWriter(int fd, const QString& text) : m_fd(fd), m_rest(text.toUtf8()) {
    // If the reader goes away, writing would end this process by SIGPIPE.
    std::signal(SIGPIPE, SIG_IGN);
    fcntl(m_fd, F_SETFL, fcntl(m_fd, F_GETFL) | O_NONBLOCK);
    auto* notifier = new QSocketNotifier(m_fd, QSocketNotifier::Write, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] { write(); });
}

DataPipeWriter::~DataPipeWriter() {
    close(m_fd);
}

void DataPipeWriter::write() {
    const ssize_t count = ::write(m_fd, m_rest.constData(), static_cast<size_t>(m_rest.size()));
    if (count > 0)
        m_rest.remove(0, count);
    const bool failed = count < 0 && errno != EAGAIN && errno != EINTR;
    if (failed || m_rest.isEmpty())
        deleteLater();
}

}  // namespace tralio
