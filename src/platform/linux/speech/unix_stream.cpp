#include "platform/linux/speech/unix_stream.h"

#include <QFile>
#include <QPointer>
#include <QSocketNotifier>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <utility>

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

QString reasonOf(int error) {
    if (error == ECONNRESET || error == EPIPE)
        return u"the other side has closed the connection"_s;
    return QString::fromLocal8Bit(std::strerror(error));
}

}  // namespace

UnixStream::UnixStream(const QString& path) {
    QMetaObject::invokeMethod(
        this, [this, path] { open(path); }, Qt::QueuedConnection);
}

UnixStream::~UnixStream() {
    close();
}

void UnixStream::open(const QString& path) {
    if (m_isClosed)
        return;
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const QByteArray name = QFile::encodeName(path);
    if (name.size() >= static_cast<qsizetype>(sizeof(address.sun_path))) {
        end(ENAMETOOLONG);
        return;
    }
    std::ranges::copy(name, address.sun_path);
    m_fd = socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    // connect() on a Unix socket never returns EINPROGRESS: a full queue fails at once with EAGAIN, as a
    // missing listener does with ECONNREFUSED.
    if (m_fd < 0 || ::connect(m_fd, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0) {
        end(errno);
        return;
    }
    m_readable = std::make_unique<QSocketNotifier>(m_fd, QSocketNotifier::Read);
    m_writable = std::make_unique<QSocketNotifier>(m_fd, QSocketNotifier::Write);
    m_writable->setEnabled(false);
    connect(m_readable.get(), &QSocketNotifier::activated, this, &UnixStream::read);
    connect(m_writable.get(), &QSocketNotifier::activated, this, &UnixStream::flush);
    Q_EMIT opened();
}

void UnixStream::write(const QByteArray& bytes) {
    if (!isOpen() || m_writeError != 0)
        return;
    m_output += bytes;
    if (!m_writable->isEnabled())
        flush();
}

void UnixStream::flush() {
    while (!m_output.isEmpty()) {
        const ssize_t count =
            send(m_fd, m_output.constData(), static_cast<size_t>(m_output.size()), MSG_NOSIGNAL);
        if (count >= 0) {
            m_output.remove(0, count);
        } else if (errno == EAGAIN) {
            break;
        } else if (errno != EINTR) {
            m_writeError = errno;
            m_output.clear();
            QMetaObject::invokeMethod(this, &UnixStream::read, Qt::QueuedConnection);
        }
    }
    m_writable->setEnabled(!m_output.isEmpty());
}

void UnixStream::read() {
    std::array<char, 64 * 1024> part;
    const QPointer<UnixStream> self(this);
    while (self && isOpen()) {
        const ssize_t count = recv(m_fd, part.data(), part.size(), 0);
        if (count > 0) {
            Q_EMIT arrived(QByteArray(part.data(), count));
            continue;
        }
        const int error = count == 0 ? ECONNRESET : errno;
        if (error == EAGAIN && m_writeError == 0)
            return;
        if (error != EINTR)
            end(error == EAGAIN ? m_writeError : error);
    }
}

void UnixStream::end(int error) {
    close();
    Q_EMIT ended(reasonOf(error));
}

void UnixStream::close() {
    m_isClosed = true;
    m_output.clear();
    m_readable.reset();
    m_writable.reset();
    if (isOpen())
        ::close(std::exchange(m_fd, -1));
}

}  // namespace tralio
