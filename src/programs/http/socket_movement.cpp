#include "programs/http/socket_movement.h"

#include <linux/tcp.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <utility>

namespace tralio {

void SocketMovement::watch(int socket) {
    m_sockets.push_back({FileDescriptor::duplicateOf(socket)});
}

SocketMovement::Clock::time_point SocketMovement::last() {
    m_isSending = false;
    for (Watched& watched : m_sockets) {
        tcp_info info{};
        socklen_t size = sizeof(info);
        if (getsockopt(watched.socket.number(), IPPROTO_TCP, TCP_INFO, &info, &size) != 0)
            continue;
        const quint64 moved = info.tcpi_bytes_received + info.tcpi_bytes_acked;
        if (std::exchange(watched.moved, moved) != moved)
            m_last = Clock::now();
        m_isSending |= info.tcpi_unacked > 0 || info.tcpi_notsent_bytes > 0;
    }
    return m_last;
}

}  // namespace tralio
