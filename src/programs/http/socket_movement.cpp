#include "programs/http/socket_movement.h"

#include <linux/tcp.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <utility>

namespace tralio {
namespace {

/// Whether libcurl still uses the socket `number` of which `duplicate` was made. Of two parallel attempts
/// (IPv6 and IPv4) it closes one.
bool isSame(int number, int duplicate) {
    struct stat now {};
    struct stat kept {};
    return fstat(number, &now) == 0 && fstat(duplicate, &kept) == 0 && now.st_ino == kept.st_ino &&
        now.st_dev == kept.st_dev;
}

}  // namespace

void SocketMovement::watch(int socket) {
    m_sockets.push_back({socket, FileDescriptor::duplicateOf(socket)});
}

SocketMovement::Clock::time_point SocketMovement::last() {
    m_isSending = false;
    std::erase_if(
        m_sockets, [](const Watched& watched) { return !isSame(watched.number, watched.socket.number()); });
    for (Watched& watched : m_sockets) {
        tcp_info info{};
        socklen_t size = sizeof(info);
        if (getsockopt(watched.socket.number(), IPPROTO_TCP, TCP_INFO, &info, &size) != 0)
            continue;
        const uint64_t came =
            info.tcpi_bytes_received - std::exchange(watched.received, info.tcpi_bytes_received);
        const uint64_t went = info.tcpi_bytes_acked - std::exchange(watched.taken, info.tcpi_bytes_acked);
        m_received += came;
        if (came + went > 0)
            m_last = Clock::now();
        m_isSending |= info.tcpi_unacked > 0 || info.tcpi_notsent_bytes > 0;
    }
    return m_last;
}

}  // namespace tralio
