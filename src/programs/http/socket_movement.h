#pragma once

#include <chrono>
#include <cstdint>
#include <vector>

#include "programs/http/file_descriptor.h"

namespace tralio {

/// Tells when bytes last moved over the connections of a transfer in either direction, by the kernel's
/// counters: received bytes, including those of headers and handshakes, and sent bytes that the peer has
/// acknowledged. libcurl itself only reports whole header lines, and bytes handed to the kernel.
class SocketMovement final {
public:
    using Clock = std::chrono::steady_clock;

    /// Watches the socket of a new connection, until libcurl closes it; keeps a duplicate so long.
    void watch(int socket);

    /// When bytes last moved, found out now; the time of construction if none have.
    [[nodiscard]] Clock::time_point last();

    /// How many bytes have been received, headers and handshakes included, as far as `last` saw.
    [[nodiscard]] uint64_t received() const { return m_received; }

    /// Whether sent bytes await acknowledgement. No event reports that they are acknowledged, so `last()`
    /// must be polled.
    [[nodiscard]] bool isSending() const { return m_isSending; }

private:
    struct Watched {
        int number;  ///< libcurl's own descriptor
        FileDescriptor socket;
        uint64_t received = 0;
        uint64_t taken = 0;  ///< of ours, by the other side
    };

    std::vector<Watched> m_sockets;
    Clock::time_point m_last = Clock::now();
    uint64_t m_received = 0;
    bool m_isSending = false;
};

}  // namespace tralio
