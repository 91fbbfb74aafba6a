#pragma once

#include <QByteArray>
#include <QNetworkRequest>
#include <qcorotask.h>

#include <chrono>
#include <memory>
#include <optional>
#include <stop_token>

class QNetworkAccessManager;

namespace tralio {

class Clock;

struct HttpResponse {
    std::optional<int> status;  ///< absent when what came back was not HTTP
    QByteArray body;
};

/// Sends requests through the desktop's proxy, with a limit on silence and on size. Used from the main
/// thread.
class HttpClient final {
public:
    /// More than any answer of a model; what exceeds it is a server gone wild, and would fill the memory.
    static constexpr qsizetype maximumBodySize = 8 * 1024 * 1024;

    explicit HttpClient(Clock& clock);
    HttpClient(const HttpClient&) = delete;
    HttpClient& operator=(const HttpClient&) = delete;

    /// Cancels the requests under way; who awaits one of them resumes on the next turn of the event loop.
    ~HttpClient();

    /// POSTs `body` and waits for the whole reply, of whatever status. Fails with a `TransportError`: also
    /// when nothing moves in either direction for `idleTimeout`, when the reply outgrows `maximumBodySize`,
    /// and when `stop` is requested, which may happen on any thread.
    [[nodiscard]] QCoro::Task<HttpResponse> send(QNetworkRequest request, QByteArray body,
                                                 std::chrono::milliseconds idleTimeout,
                                                 std::stop_token stop = {});

private:
    Clock& m_clock;
    std::unique_ptr<QNetworkAccessManager>
        m_network;                         ///< made by the first request: it costs memory and a thread
    std::unique_ptr<QObject> m_transfers;  ///< the parent of all transfers; goes before their network
};

}  // namespace tralio
