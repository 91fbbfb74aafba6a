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
    std::optional<int> status;  ///< absent if the reply was not HTTP
    QByteArray body;
};

/// Sends requests through the desktop's proxy, with limits on silence and size. Used from the main thread.
/// Destroying the client cancels the requests under way; their awaiters resume on a later turn of the event
/// loop.
class HttpClient {
public:
    /// Receives a piece of the body, and the size of the whole body if the server has announced it. May throw
    /// a `LocalizedError`, which then becomes the error of the request.
    using Receive = std::function<void(const QByteArray& piece, std::optional<qint64> totalSize)>;

    HttpClient() = default;
    HttpClient(const HttpClient&) = delete;
    HttpClient& operator=(const HttpClient&) = delete;
    virtual ~HttpClient() = default;

    /// POSTs `body` and returns the complete reply, whatever its status. Fails with a `TransportError`, also
    /// if no data moves in either direction for `idleTimeout`, if the reply is larger than any of a model,
    /// and if `stop` is requested, which may happen on any thread.
    [[nodiscard]] virtual QCoro::Task<HttpResponse> send(HttpRequest request, QByteArray body,
        std::chrono::milliseconds idleTimeout, std::stop_token stop) = 0;

    /// GETs one of the program's own addresses, and fails as `send` does. No secret is sent, so redirections
    /// are followed to any host, but never from https to http.
    [[nodiscard]] QCoro::Task<HttpResponse> get(
        HttpRequest request, std::chrono::milliseconds idleTimeout, std::stop_token stop) {
        return download(std::move(request), {}, idleTimeout, std::move(stop));
    }

    /// The same for a body of any size, which is passed to `receive` as it arrives; an empty `receive`
    /// collects it as `send` does. `receive` is not called once `stop` has been requested, and is destroyed
    /// with the request.
    [[nodiscard]] virtual QCoro::Task<HttpResponse> download(HttpRequest request, Receive receive,
        std::chrono::milliseconds idleTimeout, std::stop_token stop) = 0;
};

}  // namespace tralio
