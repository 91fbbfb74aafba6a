#include "engine/http_client.h"

#include <QHostAddress>
#include <QNetworkAccessManager>
#include <QNetworkProxyFactory>
#include <QNetworkReply>
#include <qcorofuture.h>

#include <utility>

#include "engine/http_transfer.h"
#include "engine/transport_error.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

/// The proxies that the user has set for the desktop. A model on this machine is always reached directly: a
/// proxy elsewhere would look for it on its own machine.
class DesktopProxies final : public QNetworkProxyFactory {
public:
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery& query) override {
        const QString host = query.peerHostName();
        if (host == u"localhost"_s || QHostAddress(host).isLoopback())
            return {QNetworkProxy(QNetworkProxy::NoProxy)};
        return systemProxyForQuery(query);
    }
};

/// Each request stands for itself.
QNetworkRequest withoutCookies(QNetworkRequest request) {
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    return request;
}

}  // namespace

HttpClient::HttpClient(Clock& clock) : m_clock(clock) {}

HttpClient::~HttpClient() = default;

QCoro::Task<HttpResponse> HttpClient::transfer(Start start, AddressOrigin origin, Receive receive,
                                               std::chrono::milliseconds idleTimeout, std::stop_token stop) {
    if (stop.stop_requested())
        throw TransportError::cancelled();

    if (!m_network) {
        m_network = std::make_unique<QNetworkAccessManager>();
        m_network->setProxyFactory(new DesktopProxies);
        m_transfers = std::make_unique<QObject>();
    }
    auto* transfer = new HttpTransfer(start(*m_network), {m_clock, idleTimeout, origin, std::move(receive)},
                                      stop, m_transfers.get());
    const QFuture<HttpResponse> future = transfer->future();
    const HttpResponse response = co_await future;

    // This object may be gone by now. The reply may have been on its way when the user cancelled.
    if (stop.stop_requested())
        throw TransportError::cancelled();
    co_return response;
}

QCoro::Task<HttpResponse> HttpClient::send(QNetworkRequest request, QByteArray body,
                                           std::chrono::milliseconds idleTimeout, std::stop_token stop) {
    // The request carries the user's key and text, which the library would take along to wherever a server
    // points: it may point to its own origin only.
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::SameOriginRedirectPolicy);
    const auto start = [request = withoutCookies(request), body = std::move(body)](
                           QNetworkAccessManager& network) { return network.post(request, body); };
    return transfer(start, AddressOrigin::enteredByUser, {}, idleTimeout, std::move(stop));
}

QCoro::Task<HttpResponse> HttpClient::get(const QNetworkRequest& request,
                                          std::chrono::milliseconds idleTimeout, std::stop_token stop) {
    return download(request, {}, idleTimeout, std::move(stop));
}

QCoro::Task<HttpResponse> HttpClient::download(QNetworkRequest request, Receive receive,
                                               std::chrono::milliseconds idleTimeout, std::stop_token stop) {
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    const auto start = [request = withoutCookies(request)](QNetworkAccessManager& network) {
        return network.get(request);
    };
    return transfer(start, AddressOrigin::programsOwn, std::move(receive), idleTimeout, std::move(stop));
}

}  // namespace tralio
