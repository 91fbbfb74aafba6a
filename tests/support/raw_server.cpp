#include "support/raw_server.h"

#include <algorithm>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace tralio {

QByteArray RawServer::Connection::readRequest() {
    for (;;) {
        const qsizetype head = m_read.indexOf("\r\n\r\n");
        if (head >= 0) {
            qsizetype length = 0;
            for (const QByteArray& line : m_read.first(head).split('\n'))
                if (line.toLower().startsWith("content-length:"))
                    length = line.sliced(15).trimmed().toLongLong();
            if (m_read.size() >= head + 4 + length) {
                const QByteArray request = m_read.first(head + 4 + length);
                m_read.remove(0, request.size());
                if (request.startsWith("POST "))
                    ++m_server.m_posts;
                return request;
            }
        }
        char bytes[1 << 16];
        const ssize_t count = recv(m_socket, bytes, sizeof(bytes), 0);
        if (count <= 0)
            return {};
        m_read.append(bytes, count);
    }
}

void RawServer::Connection::send(const QByteArray& bytes) const {
    for (qsizetype done = 0; done < bytes.size();) {
        const ssize_t sent = ::send(
            m_socket, bytes.constData() + done, static_cast<size_t>(bytes.size() - done), MSG_NOSIGNAL);
        if (sent <= 0)
            return;
        done += sent;
    }
}

void RawServer::Connection::reset() const {
    const linger now{1, 0};
    setsockopt(m_socket, SOL_SOCKET, SO_LINGER, &now, sizeof(now));
}

void RawServer::Connection::waitForEnd() const {
    char bytes[1 << 12];
    while (recv(m_socket, bytes, sizeof(bytes), 0) > 0) {
    }
}

RawServer::RawServer(Script script)
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

RawServer::~RawServer() {
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

void RawServer::accept() {
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

}  // namespace tralio
