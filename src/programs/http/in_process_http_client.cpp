#include "programs/http/in_process_http_client.h"

#include <QHostAddress>
#include <QNetworkAccessManager>
#include <QNetworkProxyFactory>
#include <QNetworkReply>
#include <QPointer>
#include <qcorofuture.h>

#include <optional>
#include <utility>

#include "programs/http/http_transfer.h"
#include "programs/http/network_error.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

constexpr int mostRedirections = 50;

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
QNetworkRequest toNetworkRequest(const HttpRequest& what) {
    QNetworkRequest request(what.url);
    for (const auto& [name, value] : what.headers)
        request.setRawHeader(name, value);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    // Over HTTP/2, Qt 6.4 neither sends again what a kept connection did not take any more, nor heeds the
    // size of the read buffer.
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    return request;
}

bool isSameOrigin(const QUrl& one, const QUrl& other) {
    const auto port = [](const QUrl& url) { return url.port(url.scheme() == u"https"_s ? 443 : 80); };
    return one.scheme() == other.scheme() && one.host() == other.host() && port(one) == port(other);
}

/// Nothing when a request that `from` redirects may go on to `target`. One to the user's address carries the
/// key, which stays with its server.
std::optional<QNetworkReply::NetworkError> whyNotToFollow(
    const QUrl& from, const QUrl& target, AddressOrigin origin) {
    if (origin == AddressOrigin::enteredByUser && !isSameOrigin(from, target))
        return QNetworkReply::InsecureRedirectError;
    if (target.scheme() == u"https"_s)
        return std::nullopt;
    if (target.scheme() != u"http"_s)
        return QNetworkReply::ProtocolUnknownError;
    if (from.scheme() == u"https"_s)
        return QNetworkReply::InsecureRedirectError;
    return std::nullopt;
}

}  // namespace

InProcessHttpClient::InProcessHttpClient(Clock& clock) : m_clock(clock) {}

InProcessHttpClient::~InProcessHttpClient() = default;

QCoro::Task<HttpTransfer::Result> InProcessHttpClient::transfer(Start start, AddressOrigin origin,
    Receive receive, std::chrono::milliseconds idleTimeout, std::stop_token stop) {
    if (stop.stop_requested())
        throw TransportError::cancelled();

    if (!m_network) {
        m_network = std::make_unique<QNetworkAccessManager>();
        m_network->setProxyFactory(new DesktopProxies);
        m_transfers = std::make_unique<QObject>();
    }
    const QPointer alive(m_transfers.get());
    auto* transfer = new HttpTransfer(
        start(*m_network), {m_clock, idleTimeout, origin, std::move(receive)}, stop, m_transfers.get());
    const QFuture<HttpTransfer::Result> future = transfer->future();
    const HttpTransfer::Result result = co_await future;

    // This object may be gone by now. The reply may have been on its way when the user cancelled.
    if (!alive || stop.stop_requested())
        throw TransportError::cancelled();
    co_return result;
}

// Redirections are not left to the library: it would take a key and a text along to wherever a server points,
// Qt 6.4 now and then loses count of a body that it sends again, and forgets the size of the read buffer.
QCoro::Task<HttpResponse> InProcessHttpClient::exchange(HttpRequest request, std::optional<QByteArray> body,
    AddressOrigin origin, Receive receive, std::chrono::milliseconds idleTimeout, std::stop_token stop) {
    const auto start = [&request, &body](QNetworkAccessManager& network) {
        const QNetworkRequest ours = toNetworkRequest(request);
        return body ? network.post(ours, *body) : network.get(ours);
    };
    for (int redirections = 0; redirections <= mostRedirections; ++redirections) {
        QCoro::Task<HttpTransfer::Result> asking = transfer(start, origin, receive, idleTimeout, stop);
        const HttpTransfer::Result result = co_await asking;
        if (result.redirection.isEmpty())
            co_return result.response;
        const QUrl target = request.url.resolved(result.redirection);
        if (const auto refusal = whyNotToFollow(request.url, target, origin))
            throw networkError(*refusal, request.url, {}, origin);
        request.url = target;
        if (result.response.status != 307 && result.response.status != 308)
            body.reset();
    }
    throw networkError(QNetworkReply::TooManyRedirectsError, request.url, {}, origin);
}

QCoro::Task<HttpResponse> InProcessHttpClient::send(
    HttpRequest request, QByteArray body, std::chrono::milliseconds idleTimeout, std::stop_token stop) {
    return exchange(
        std::move(request), std::move(body), AddressOrigin::enteredByUser, {}, idleTimeout, std::move(stop));
}

QCoro::Task<HttpResponse> InProcessHttpClient::download(
    HttpRequest request, Receive receive, std::chrono::milliseconds idleTimeout, std::stop_token stop) {
    return exchange(std::move(request), std::nullopt, AddressOrigin::programsOwn, std::move(receive),
        idleTimeout, std::move(stop));
}

}  // namespace tralio
