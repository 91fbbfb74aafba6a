#pragma once

#include <QByteArray>

#include <chrono>
#include <curl/curl.h>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <variant>
#include <vector>

#include "platform/linux/helpers/http_protocol.h"
#include "programs/http/transport_words.h"

namespace tralio {

/// One request, from its first address over its redirections to its end: what libcurl is told of it, and what
/// it tells.
///
/// Each has a connection of its own, which is used once: on a kept one libcurl takes what came while it was
/// idle for the next answer, and sends a request again that the server had read. So no answer is another
/// request's, and nothing is sent twice.
class Transfer final {
public:
    using Time = std::chrono::steady_clock::time_point;
    using Send = std::function<void(const http_protocol::Reply&)>;

    Transfer(const http_protocol::Post& post, Send send);
    Transfer(const http_protocol::Get& get, Send send);
    Transfer(const Transfer&) = delete;
    Transfer& operator=(const Transfer&) = delete;

    [[nodiscard]] http_protocol::Id id() const { return m_id; }
    [[nodiscard]] const QUrl& url() const { return m_request.url; }
    [[nodiscard]] CURL* handle() const { return m_easy.get(); }

    /// Whether there is an address to go to; if not, the failure has been told.
    [[nodiscard]] bool canBegin();

    /// Makes the handle ready for the address, by this proxy.
    void begin(const QByteArray& proxy);

    /// What becomes of it when the connection has done its part: on to another address, or told.
    enum class Next { goesOn, isOver };
    [[nodiscard]] Next conclude(CURLcode code);

    /// Whether nothing has moved either way for too long; then the failure has been told. Else `deadline` is
    /// when that would be so.
    [[nodiscard]] bool isSilent(Time now);
    [[nodiscard]] Time deadline() const { return m_lastMovement + m_idleTimeout; }

private:
    struct Cleanup {
        void operator()(CURL* easy) const { curl_easy_cleanup(easy); }
        void operator()(curl_slist* list) const { curl_slist_free_all(list); }
    };

    /// A descriptor of its own.
    class Socket final {
    public:
        explicit Socket(int descriptor) : m_descriptor(descriptor) {}
        Socket(Socket&& other) noexcept : m_descriptor(std::exchange(other.m_descriptor, -1)) {}
        Socket& operator=(Socket&&) = delete;
        ~Socket();
        [[nodiscard]] int descriptor() const { return m_descriptor; }

    private:
        int m_descriptor;
    };

    Transfer(http_protocol::Id id, HttpRequest request, std::chrono::milliseconds idleTimeout, Send send);

    static size_t takeHeader(char* line, size_t size, size_t count, void* transfer);
    static size_t takeBody(char* bytes, size_t size, size_t count, void* transfer);
    static curl_socket_t openSocket(void* transfer, curlsocktype purpose, curl_sockaddr* address);

    [[nodiscard]] bool takeHeader(const QByteArray& line);
    [[nodiscard]] bool takeBody(const QByteArray& bytes);
    /// Notes when something moved last, either way.
    void followMovement(Time now);
    [[nodiscard]] std::optional<int> status() const;
    [[nodiscard]] Next redirect(const QUrl& target);
    [[nodiscard]] TransferFailure failure(CURLcode code) const;
    void fail(const QString& words);
    /// Ends the connection from within a callback; `conclude` tells the words.
    [[nodiscard]] bool stop(const QString& words);

    http_protocol::Id m_id;
    HttpRequest m_request;
    std::optional<QByteArray> m_body;
    AddressOrigin m_origin = AddressOrigin::programsOwn;
    bool m_inPieces = false;
    std::chrono::milliseconds m_idleTimeout;
    Send m_send;

    // Of the hop that is under way.
    std::vector<Socket>
        m_sockets;  ///< our own descriptors of libcurl's connections, to ask the system about them
    std::unique_ptr<CURL, Cleanup> m_easy;
    std::unique_ptr<curl_slist, Cleanup> m_headers;
    char m_detail[CURL_ERROR_SIZE] = {};
    bool m_usesProxy = false;
    qsizetype m_headerBytes = 0;
    bool m_isHeadWhole = false;
    QByteArray m_location;
    bool m_isEncoded = false;  ///< the body differs from what its announced size counts
    HttpResponse m_response;
    QString m_stoppedBecause;
    quint64 m_moved = 0;  ///< bytes that the peer has sent or acknowledged

    int m_redirections = 0;
    Time m_lastMovement = std::chrono::steady_clock::now();
};

}  // namespace tralio
