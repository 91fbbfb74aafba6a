#pragma once

#include <memory>
#include <optional>

#include "engine/http_client.h"
#include "programs/http/http_transfer.h"

class QNetworkAccessManager;

namespace tralio {

/// Sends requests from this process, which costs it the network and the TLS library: some 8 MB that it does
/// not give back.
class InProcessHttpClient final : public HttpClient {
public:
    explicit InProcessHttpClient(Clock& clock);
    ~InProcessHttpClient() override;

    [[nodiscard]] QCoro::Task<HttpResponse> send(HttpRequest request, QByteArray body,
        std::chrono::milliseconds idleTimeout, std::stop_token stop) override;
    [[nodiscard]] QCoro::Task<HttpResponse> download(HttpRequest request, Receive receive,
        std::chrono::milliseconds idleTimeout, std::stop_token stop) override;

private:
    [[nodiscard]] QCoro::Task<HttpResponse> exchange(HttpRequest request, std::optional<QByteArray> body,
        AddressOrigin origin, Receive receive, std::chrono::milliseconds idleTimeout, std::stop_token stop);

    using Start = std::function<QNetworkReply*(QNetworkAccessManager&)>;

    [[nodiscard]] QCoro::Task<HttpTransfer::Result> transfer(Start start, AddressOrigin origin,
        Receive receive, std::chrono::milliseconds idleTimeout, std::stop_token stop);

    Clock& m_clock;
    std::unique_ptr<QNetworkAccessManager>
        m_network;                         ///< made by the first request: it costs memory and a thread
    std::unique_ptr<QObject> m_transfers;  ///< the parent of all transfers; goes before their network
};

}  // namespace tralio
