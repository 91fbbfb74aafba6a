#pragma once

#include <QByteArray>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <list>
#include <mutex>
#include <netinet/in.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace tralio {

/// A server on loopback that sends what a test writes down, byte by byte, and counts for itself what it was
/// sent. Each connection is served by a script, on a thread of its own.
class RawServer final {
public:
    class Connection {
    public:
        /// A whole request, its body included; empty when the peer has gone.
        QByteArray readRequest() {
            for (;;) {
                const qsizetype end = m_read.indexOf("\r\n\r\n");
                const QByteArray head = m_read.first(std::max(end, qsizetype(0))).toLower();
                const qsizetype at = head.indexOf("\ncontent-length:");
                const qsizetype length =
                    at < 0 ? 0 : head.mid(at + 16).split('\r').first().trimmed().toLongLong();
                if (end >= 0 && m_read.size() >= end + 4 + length) {
                    const QByteArray request = m_read.first(end + 4 + length);
                    m_read.remove(0, request.size());
                    m_server.m_posts += request.startsWith("POST ") ? 1 : 0;
                    return request;
                }
                char bytes[1 << 16];
                const ssize_t count = recv(m_socket, bytes, sizeof(bytes), 0);
                if (count <= 0)
                    return {};
                m_read.append(bytes, count);
            }
        }
        void send(const QByteArray& bytes) const {
            for (qsizetype done = 0; done < bytes.size();) {
                const ssize_t sent = ::send(m_socket, bytes.constData() + done,
                    static_cast<size_t>(bytes.size() - done), MSG_NOSIGNAL);
                if (sent <= 0)
                    return;
                done += sent;
            }
        }
        void wait(std::chrono::milliseconds time) const { std::this_thread::sleep_for(time); }
        /// Ends with a reset instead of an ordinary end.
        void reset() const {
            const linger now{1, 0};
            setsockopt(m_socket, SOL_SOCKET, SO_LINGER, &now, sizeof(now));
        }
        /// Until the peer ends the connection.
        void waitForEnd() const {
            char bytes[1 << 12];
            while (recv(m_socket, bytes, sizeof(bytes), 0) > 0) {
            }
        }

    private:
        friend class RawServer;
        Connection(RawServer& server, int socket, int number)
            : m_server(server), m_socket(socket), number(number) {}

        RawServer& m_server;
        int m_socket;
        QByteArray m_read;

    public:
        const int number;  ///< from 1, as they came
    };
    using Script = std::function<void(Connection&)>;

    explicit RawServer(Script script)
        : m_script(std::move(script)), m_listener(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof(address);
        auto* generic = reinterpret_cast<sockaddr*>(&address);
        if (bind(m_listener, generic, size) != 0 || listen(m_listener, 16) != 0 ||
            getsockname(m_listener, generic, &size) != 0)
            qFatal("A test's server cannot listen.");
        m_port = ntohs(address.sin_port);
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
    /// POSTs that have been read to their end.
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
                Connection connection(*this, socket, number);
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
