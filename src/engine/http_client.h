#pragma once

#include <QByteArray>
#include <QNetworkRequest>
#include <qcorotask.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>

class QNetworkAccessManager;
class QNetworkReply;

namespace tralio {

class Clock;
enum class AddressOrigin;

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

    /// Takes a piece of a body, and the size of the whole where the server has announced it. May fail with a
    /// `LocalizedError`, which then is the request's.
    using Receive = std::function<void(const QByteArray& piece, std::optional<qint64> totalSize)>;

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

    /// GETs one of the program's own addresses, and fails as `send` does. No secret goes along, so
    /// redirections are followed wherever they lead, but never from https to http.
    [[nodiscard]] QCoro::Task<HttpResponse> get(const QNetworkRequest& request,
                                                std::chrono::milliseconds idleTimeout,
                                                std::stop_token stop = {});

    /// The same for a body of any size, which goes to `receive` as it comes. `receive` is not called once
    /// `stop` has been requested, and goes with the request.
    [[nodiscard]] QCoro::Task<HttpResponse> download(QNetworkRequest request, Receive receive,
                                                     std::chrono::milliseconds idleTimeout,
                                                     std::stop_token stop = {});

private:
    using Start = std::function<QNetworkReply*(QNetworkAccessManager&)>;

    [[nodiscard]] QCoro::Task<HttpResponse> transfer(Start start, AddressOrigin origin, Receive receive,
                                                     std::chrono::milliseconds idleTimeout,
                                                     std::stop_token stop);

    Clock& m_clock;
    std::unique_ptr<QNetworkAccessManager>
        m_network;                         ///< made by the first request: it costs memory and a thread
    std::unique_ptr<QObject> m_transfers;  ///< the parent of all transfers; goes before their network
};

}  // namespace tralio
