#include "platform/linux/helpers/frames.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

namespace tralio::frames {

std::optional<QByteArray> Reader::next() {
    if (m_isBroken || m_buffer.size() < headerSize)
        return std::nullopt;
    QDataStream stream(m_buffer);
    quint32 readMark = 0;
    quint32 size = 0;
    stream >> readMark >> size;
    m_isBroken = readMark != mark || size > m_maximumSize;
    if (m_isBroken || m_buffer.size() - headerSize < size)
        return std::nullopt;
    const QByteArray payload = m_buffer.mid(headerSize, size);
    m_buffer.remove(0, headerSize + size);
    return payload;
}

int takeStandardOutput() {
    const int replies = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3);
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (replies < 0 || nowhere < 0 || dup2(nowhere, STDOUT_FILENO) < 0)
        return -1;
    close(nowhere);
    return replies;
}

void writeAll(int file, const QByteArray& bytes) {
    for (qsizetype done = 0; done < bytes.size();) {
        const ssize_t written =
            write(file, bytes.constData() + done, static_cast<size_t>(bytes.size() - done));
        if (written > 0)
            done += written;
        else if (errno != EINTR)
            _exit(EXIT_FAILURE);  // nobody is there to read
    }
}

}  // namespace tralio::frames
