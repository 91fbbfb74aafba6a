#pragma once

#include "engine/http_client.h"

namespace tralio {

/// Forwards requests, and records how long each may be silent.
struct NotedIdleLimits final : HttpClient {
    explicit NotedIdleLimits(HttpClient& client) : m_client(client) {}

    QCoro::Task<HttpResponse> send(HttpRequest request, QByteArray body,
        std::chrono::milliseconds idleTimeout, std::stop_token stop) override {
        limits.push_back(idleTimeout);
        return m_client.send(std::move(request), std::move(body), idleTimeout, std::move(stop));
    }
    QCoro::Task<HttpResponse> download(HttpRequest request, Receive receive,
        std::chrono::milliseconds idleTimeout, std::stop_token stop) override {
        limits.push_back(idleTimeout);
        return m_client.download(std::move(request), std::move(receive), idleTimeout, std::move(stop));
    }

    QList<std::chrono::milliseconds> limits;

private:
    HttpClient& m_client;
};

}  // namespace tralio
