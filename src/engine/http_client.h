#pragma once

#include <QByteArray>
#include <QList>
#include <QUrl>
#include <qcorotask.h>

#include <chrono>
#include <functional>
#include <optional>
#include <stop_token>
#include <utility>

namespace tralio {

struct HttpRequest {
    QUrl url;
    QList<std::pair<QByteArray, QByteArray>> headers = {};
};

struct HttpResponse {
    std::optional<int> status;  ///< absent when what came back was not HTTP
    QByteArray body;
};

/// Sends requests through the desktop's proxy, with a limit on silence and on size. Used from the main
/// thread. When the client goes, it cancels the requests under way; who awaits one of them resumes on a later
/// turn of the event loop.
class HttpClient {
public:
    /// Takes a piece of a body, and the size of the whole where the server has announced it. May fail with a
    /// `LocalizedError`, which then is the request's.
    using Receive = std::function<void(const QByteArray& piece, std::optional<qint64> totalSize)>;

    HttpClient() = default;
    HttpClient(const HttpClient&) = delete;
    HttpClient& operator=(const HttpClient&) = delete;
    virtual ~HttpClient() = default;

    /// POSTs `body` and waits for the whole reply, of whatever status. Fails with a `TransportError`: also
    /// when nothing moves in either direction for `idleTimeout`, when the reply is larger than any of a
    /// model, and when `stop` is requested, which may happen on any thread.
    [[nodiscard]] virtual QCoro::Task<HttpResponse> send(HttpRequest request, QByteArray body,
        std::chrono::milliseconds idleTimeout, std::stop_token stop) = 0;

    /// GETs one of the program's own addresses, and fails as `send` does. No secret goes along, so
    /// redirections are followed wherever they lead, but never from https to http.
    [[nodiscard]] QCoro::Task<HttpResponse> get(
        HttpRequest request, std::chrono::milliseconds idleTimeout, std::stop_token stop) {
        return download(std::move(request), {}, idleTimeout, std::move(stop));
    }

    /// The same for a body of any size, which goes to `receive` as it comes; an empty `receive` collects it
    /// as `send` does. `receive` is not called once `stop` has been requested, and goes with the request.
    [[nodiscard]] virtual QCoro::Task<HttpResponse> download(HttpRequest request, Receive receive,
        std::chrono::milliseconds idleTimeout, std::stop_token stop) = 0;
};

}  // namespace tralio
