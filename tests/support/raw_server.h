#pragma once

#include <QByteArray>

#include <atomic>
#include <chrono>
#include <functional>
#include <list>
#include <mutex>
#include <thread>

namespace tralio {

/// A server on loopback that sends what a test writes down, byte by byte, and counts for itself what it was
/// sent. Each connection is served by a script, on a thread of its own.
class RawServer final {
public:
    class Connection {
    public:
        /// A whole request, its body included; empty when the peer has gone.
        QByteArray readRequest();
        void send(const QByteArray& bytes) const;
        void wait(std::chrono::milliseconds time) const { std::this_thread::sleep_for(time); }
        /// Ends with a reset instead of an ordinary end.
        void reset() const;
        /// Until the peer ends the connection.
        void waitForEnd() const;

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

    explicit RawServer(Script script);
    ~RawServer();

    [[nodiscard]] quint16 port() const { return m_port; }
    [[nodiscard]] int connections() const { return m_connections; }
    /// POSTs that have been read to their end.
    [[nodiscard]] int posts() const { return m_posts; }

private:
    void accept();

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
