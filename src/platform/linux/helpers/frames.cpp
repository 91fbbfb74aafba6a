#include "platform/linux/helpers/frames.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace tralio::frames {
namespace {

struct Header {
    uint32_t mark = 0x54524c4f;
    uint32_t size = 0;
};

}  // namespace

std::string frame(std::string_view payload) {
    const Header header{.size = static_cast<uint32_t>(payload.size())};
    std::string bytes(sizeof header, '\0');
    std::memcpy(bytes.data(), &header, sizeof header);
    return bytes.append(payload);
}

bool Reader::readFrom(int file) {
    char bytes[1 << 16];
    ssize_t count = 0;
    do
        count = read(file, bytes, sizeof bytes);
    while (count < 0 && errno == EINTR);
    add({bytes, static_cast<size_t>(std::max<ssize_t>(0, count))});
    return count > 0;
}

std::optional<std::string> Reader::next() {
    Header header;
    if (m_isBroken || m_buffer.size() < sizeof header)
        return std::nullopt;
    std::memcpy(&header, m_buffer.data(), sizeof header);
    m_isBroken = header.mark != Header().mark || header.size > m_maximumSize;
    if (m_isBroken || m_buffer.size() - sizeof header < header.size)
        return std::nullopt;
    std::string payload = m_buffer.substr(sizeof header, header.size);
    m_buffer.erase(0, sizeof header + header.size);
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

void writeAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(file, bytes.data(), bytes.size());
        if (written > 0)
            bytes.remove_prefix(static_cast<size_t>(written));
        else if (errno != EINTR)
            _exit(EXIT_FAILURE);  // the reader has gone
    }
}

}  // namespace tralio::frames
