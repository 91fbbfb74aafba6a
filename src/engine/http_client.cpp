#include "engine/http_client.h"

#include <QHostAddress>
#include <QNetworkAccessManager>
#include <QNetworkProxyFactory>
#include <QNetworkReply>
#include <qcorofuture.h>

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

}  // namespace

HttpClient::HttpClient(Clock& clock) : m_clock(clock) {}

HttpClient::~HttpClient() = default;

QCoro::Task<HttpResponse> HttpClient::send(QNetworkRequest request, QByteArray body,
                                           std::chrono::milliseconds idleTimeout, std::stop_token stop) {
    if (stop.stop_requested())
        throw TransportError::cancelled();

    if (!m_network) {
        m_network = std::make_unique<QNetworkAccessManager>();
        m_network->setProxyFactory(new DesktopProxies);
        m_transfers = std::make_unique<QObject>();
    }
    // Each request stands for itself. It carries the user's key and text, which the library would take along
    // to wherever a server points: it may point to its own origin only.
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::SameOriginRedirectPolicy);
    QNetworkReply* reply = m_network->post(request, body);
    auto* transfer = new HttpTransfer(reply, m_clock, idleTimeout, stop, m_transfers.get());
    const QFuture<HttpResponse> future = transfer->future();
    const HttpResponse response = co_await future;

    // This object may be gone by now. The reply may have been on its way when the user cancelled.
    if (stop.stop_requested())
        throw TransportError::cancelled();
    co_return response;
}

}  // namespace tralio
