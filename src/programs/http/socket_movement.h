#pragma once

#include <chrono>
#include <cstdint>
#include <vector>

#include "programs/http/file_descriptor.h"

namespace tralio {

/// Sees, by what the kernel counts, when something last moved over the connections of a transfer in either
/// direction: a byte that came, be it one of a header or a handshake, or one of ours that the other side has
/// taken. libcurl tells of whole header lines only, and of bytes that it has handed to the kernel.
class SocketMovement final {
public:
    using Clock = std::chrono::steady_clock;

    /// A connection is made with this socket, of which a duplicate is kept until libcurl closes it.
    void watch(int socket);

    /// When something moved last, as far as can be told now; at first, when this object was made.
    [[nodiscard]] Clock::time_point last();

    /// How many bytes have come, of headers and handshakes too, as far as `last` saw.
    [[nodiscard]] uint64_t received() const { return m_received; }

    /// Whether bytes of ours are on their way: that they are taken wakes nobody, so it has to be looked for.
    [[nodiscard]] bool isSending() const { return m_isSending; }

private:
    struct Watched {
        int number;  ///< libcurl's own
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
