#include "engine/in_process_http_client.h"

#include <QHostAddress>
#include <QNetworkAccessManager>
#include <QNetworkProxyFactory>
#include <QNetworkReply>
#include <qcorofuture.h>

#include <utility>

#include "engine/http_transfer.h"
#include "engine/network_error.h"

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
QNetworkRequest withoutCookies(const HttpRequest& what) {
    QNetworkRequest request(what.url);
    for (const auto& [name, value] : what.headers)
        request.setRawHeader(name, value);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    return request;
}

}  // namespace

InProcessHttpClient::InProcessHttpClient(Clock& clock) : m_clock(clock) {}

InProcessHttpClient::~InProcessHttpClient() = default;

QCoro::Task<HttpResponse> InProcessHttpClient::transfer(Start start, AddressOrigin origin, Receive receive,
                                                        std::chrono::milliseconds idleTimeout,
                                                        std::stop_token stop) {
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

QCoro::Task<HttpResponse> InProcessHttpClient::send(HttpRequest request, QByteArray body,
                                                    std::chrono::milliseconds idleTimeout,
                                                    std::stop_token stop) {
    const auto start = [request = std::move(request),
                        body = std::move(body)](QNetworkAccessManager& network) {
        QNetworkRequest posting = withoutCookies(request);
        // The request carries the user's key and text, which the library would take along to wherever a
        // server points: it may point to its own origin only.
        posting.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                             QNetworkRequest::SameOriginRedirectPolicy);
        return network.post(posting, body);
    };
    return transfer(start, AddressOrigin::enteredByUser, {}, idleTimeout, std::move(stop));
}

QCoro::Task<HttpResponse> InProcessHttpClient::download(HttpRequest request, Receive receive,
                                                        std::chrono::milliseconds idleTimeout,
                                                        std::stop_token stop) {
    const auto start = [request = std::move(request)](QNetworkAccessManager& network) {
        QNetworkRequest getting = withoutCookies(request);
        getting.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                             QNetworkRequest::NoLessSafeRedirectPolicy);
        return network.get(getting);
    };
    return transfer(start, AddressOrigin::programsOwn, std::move(receive), idleTimeout, std::move(stop));
}

}  // namespace tralio
