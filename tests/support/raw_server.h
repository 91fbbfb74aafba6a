#pragma once

#include <atomic>
#include <list>
#include <mutex>
#include <netinet/in.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

#include "support/testing.h"

namespace tralio {

[[nodiscard]] inline sockaddr_in loopback(quint16 port) {
    return {
        .sin_family = AF_INET, .sin_port = htons(port), .sin_addr = {htonl(INADDR_LOOPBACK)}, .sin_zero = {}};
}

/// Makes a socket listen on the loopback interface, at any free port. Returns the port.
inline quint16 listenOnLoopback(int listener, int queue) {
    sockaddr_in address = loopback(0);
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    socklen_t size = sizeof address;
    if (bind(listener, generic, size) != 0 || listen(listener, queue) != 0 ||
        getsockname(listener, generic, &size) != 0)
        qFatal("A test's server cannot listen.");
    return ntohs(address.sin_port);
}

/// A loopback server that sends exactly the bytes that a test specifies, and counts what it received. A
/// script serves each connection, on a thread of its own.
class RawServer final {
public:
    struct Connection {
        RawServer& server;
        const int socket;
        const int number;  ///< from 1, in the order of arrival
        QByteArray unread{};

        /// Reads a whole request, including its body; empty if the peer has closed the connection.
        QByteArray readRequest() {
            for (;;) {
                const qsizetype end = unread.indexOf("\r\n\r\n");
                const QByteArray head = unread.first(std::max(end, qsizetype(0))).toLower();
                const qsizetype at = head.indexOf("\ncontent-length:");
                const qsizetype length =
                    at < 0 ? 0 : head.mid(at + 16).split('\r').first().trimmed().toLongLong();
                if (end >= 0 && unread.size() >= end + 4 + length) {
                    const QByteArray request = unread.first(end + 4 + length);
                    unread.remove(0, request.size());
                    server.m_posts += request.startsWith("POST ") ? 1 : 0;
                    return request;
                }
                char bytes[1 << 16];
                const ssize_t count = recv(socket, bytes, sizeof(bytes), 0);
                if (count <= 0)
                    return {};
                unread.append(bytes, count);
            }
        }
        void send(const QByteArray& bytes) const {
            (void)!::send(socket, bytes.constData(), static_cast<size_t>(bytes.size()), MSG_NOSIGNAL);
        }
        void wait(std::chrono::milliseconds time) const { std::this_thread::sleep_for(time); }
        /// Closes with a TCP reset instead of an orderly end.
        void reset() const {
            const linger now{1, 0};
            setsockopt(socket, SOL_SOCKET, SO_LINGER, &now, sizeof(now));
        }
        /// Waits until the peer closes the connection.
        void waitForEnd() const {
            char bytes[1 << 12];
            while (recv(socket, bytes, sizeof(bytes), 0) > 0) {
            }
        }
    };
    using Script = std::function<void(Connection&)>;

    explicit RawServer(Script script)
        : m_script(std::move(script)), m_listener(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        m_port = listenOnLoopback(m_listener, 16);
        m_acceptor = std::thread([this] { accept(); });
    }
    ~RawServer() {
        m_isOver = true;
        shutdown(m_listener, SHUT_RDWR);
        m_acceptor.join();
        close(m_listener);
        {
            const std::lock_guard lock(m_mutex);
            for (const int socket : m_sockets)
                shutdown(socket, SHUT_RDWR);
        }
        for (std::thread& thread : m_threads)
            thread.join();
    }

    [[nodiscard]] quint16 port() const { return m_port; }
    [[nodiscard]] int connections() const { return m_connections; }
    /// The number of POST requests read to their end.
    [[nodiscard]] int posts() const { return m_posts; }

private:
    void accept() {
        for (;;) {
            const int socket = accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
            if (socket < 0 || m_isOver)
                return;
            const int number = ++m_connections;
            const std::lock_guard lock(m_mutex);
            m_sockets.push_back(socket);
            m_threads.emplace_back([this, socket, number] {
                Connection connection{*this, socket, number};
                m_script(connection);
                const std::lock_guard inner(m_mutex);
                m_sockets.remove(socket);
                close(socket);
            });
        }
    }

    Script m_script;
    int m_listener;
    quint16 m_port = 0;
    std::atomic<int> m_connections = 0;
    std::atomic<int> m_posts = 0;
    std::atomic<bool> m_isOver = false;
    std::mutex m_mutex;
    std::list<int> m_sockets;
    std::list<std::thread> m_threads;
    std::thread m_acceptor;
};

}  // namespace tralio
