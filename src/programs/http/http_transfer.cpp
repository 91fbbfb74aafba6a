#include "programs/http/http_transfer.h"

#include <utility>

#include "programs/http/network_error.h"

namespace tralio {
namespace {

constexpr qint64 readBufferSize = 1024 * 1024;

}  // namespace

HttpTransfer::HttpTransfer(QNetworkReply* reply, Terms terms, const std::stop_token& stop, QObject* parent)
    : QObject(parent), m_reply(reply), m_terms(std::move(terms)), m_stop(stop) {
    m_promise.start();
    restartIdleTimer();
    // A server that is faster than who takes the body has to wait, or it would fill the memory, and keep the
    // event loop from anything else.
    if (m_terms.receive)
        reply->setReadBufferSize(readBufferSize);

    connect(reply, &QNetworkReply::uploadProgress, this, &HttpTransfer::restartIdleTimer);
    connect(reply, &QNetworkReply::metaDataChanged, this, &HttpTransfer::restartIdleTimer);
    connect(reply, &QNetworkReply::downloadProgress, this, &HttpTransfer::restartIdleTimer);
    connect(reply, &QNetworkReply::readyRead, this, &HttpTransfer::takeBody);
    connect(reply, &QNetworkReply::sslErrors, this, [this](const auto& errors) { m_sslErrors = errors; });
    connect(reply, &QNetworkReply::finished, this, &HttpTransfer::conclude);
    // After a compressed body that breaks, Qt 6.4 goes on loading and tells no more of it.
    connect(
        reply, &QNetworkReply::errorOccurred, this,
        [this](QNetworkReply::NetworkError error) {
            if (error == QNetworkReply::UnknownContentError && m_reply)
                conclude();
        },
        Qt::QueuedConnection);

    m_onStop.emplace(stop, [this] {
        QMetaObject::invokeMethod(
            this, [this] { fail(std::make_exception_ptr(TransportError::cancelled())); },
            Qt::QueuedConnection);
    });
}

HttpTransfer::~HttpTransfer() {
    m_onStop.reset();
    fail(std::make_exception_ptr(TransportError::cancelled()));
}

void HttpTransfer::restartIdleTimer() {
    m_idleTimer = m_terms.clock.after(
        m_terms.idleTimeout,
        [this] {
            fail(std::make_exception_ptr(TransportError::timedOut(m_reply->url(), m_terms.idleTimeout)));
        });
}

void HttpTransfer::takeBody() {
    restartIdleTimer();
    try {
        takePiece(m_reply->readAll());
    } catch (const LocalizedError&) {
        fail(std::current_exception());
    }
}

void HttpTransfer::takePiece(const QByteArray& piece) {
    m_received += piece.size();
    if (!m_terms.receive || !redirection().isEmpty()) {
        m_body += piece;
        if (m_body.size() > HttpClient::maximumBodySize)
            throw TransportError::replyTooLarge(m_reply->url(), HttpClient::maximumBodySize);
    } else if (!piece.isEmpty() && !m_stop.stop_requested()) {
        m_terms.receive(piece, announcedSize());
    }
}

void HttpTransfer::conclude() {
    std::optional<int> status;
    const QVariant attribute = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
    if (attribute.isValid())
        status = attribute.toInt();

    if (brokeDown(status)) {
        fail(std::make_exception_ptr(
            networkError(m_reply->error(), m_reply->url(), m_sslErrors, m_terms.origin)));
        return;
    }
    takeBody();  // what came with the end
    if (!m_reply)
        return;
    if (wasCutOff(status)) {
        fail(std::make_exception_ptr(
            networkError(QNetworkReply::RemoteHostClosedError, m_reply->url(), {}, m_terms.origin)));
        return;
    }
    m_promise.addResult(Result{{status, std::exchange(m_body, {})}, redirection()});
    settle();
}

bool HttpTransfer::brokeDown(std::optional<int> status) const {
    const QNetworkReply::NetworkError error = m_reply->error();
    if (error == QNetworkReply::NoError)
        return false;
    // Qt drops the connection on a first line that is not HTTP, and reports no more than that.
    if (!status)
        return error != QNetworkReply::RemoteHostClosedError;
    // The library turns an error status into an error of its own, and lays those above the ones of the
    // connection and of the proxy. A connection that broke within the body of an error page is still below.
    const bool saysTheStatus = error > QNetworkReply::UnknownProxyError ||
        (error == QNetworkReply::ProxyAuthenticationRequiredError && *status == 407);
    return *status < 400 || !saysTheStatus;
}

bool HttpTransfer::wasCutOff(std::optional<int> status) const {
    // Answers of other kinds may announce a body that does not follow.
    const bool hasWholeBody =
        status >= 200 && status < 300 && m_reply->rawHeader("Content-Encoding").isEmpty();
    return hasWholeBody && m_received < announcedSize().value_or(0);
}

QUrl HttpTransfer::redirection() const {
    return m_reply->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
}

std::optional<qint64> HttpTransfer::announcedSize() const {
    const QVariant size = m_reply->header(QNetworkRequest::ContentLengthHeader);
    return size.isValid() ? std::optional(size.toLongLong()) : std::nullopt;
}

void HttpTransfer::fail(std::exception_ptr error) {
    if (!m_reply)
        return;
    m_promise.setException(std::move(error));
    settle();
}

void HttpTransfer::settle() {
    m_promise.finish();
    m_idleTimer.takeBack();
    QNetworkReply* reply = std::exchange(m_reply, nullptr);
    reply->disconnect(this);
    reply->abort();
    reply->deleteLater();
    deleteLater();
}

}  // namespace tralio
