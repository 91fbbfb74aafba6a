#pragma once

#include <QFuture>
#include <QNetworkReply>
#include <QObject>
#include <QPromise>
#include <QSslError>
#include <QUrl>

#include <chrono>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>

#include "common/clock.h"
#include "engine/http_client.h"
#include "programs/http/network_error.h"

namespace tralio {

/// One request under way: collects its reply or hands it on, watches over silence and size, and settles its
/// future exactly once, also when it is destroyed early. Deletes itself when it has settled.
///
/// The future stands between the reply and who awaits it on purpose: a continuation runs from the event loop,
/// never inside a signal of the reply or a stop callback, so it may destroy the client or the stop source.
class HttpTransfer final : public QObject {
public:
    struct Terms {
        Clock& clock;
        std::chrono::milliseconds idleTimeout;
        AddressOrigin origin;         ///< for the words of an error
        HttpClient::Receive receive;  ///< takes the body; without it, the body is collected
    };

    struct Result {
        HttpResponse response;
        /// Where the server points, often relative; empty when it does not.
        QUrl redirection;
    };

    HttpTransfer(QNetworkReply* reply, Terms terms, const std::stop_token& stop, QObject* parent);
    ~HttpTransfer() override;

    [[nodiscard]] QFuture<Result> future() const { return m_promise.future(); }

private:
    void restartIdleTimer();
    void takeBody();
    void takePiece(const QByteArray& piece);
    void conclude();
    void fail(std::exception_ptr error);
    void settle();

    /// Whether the reply's error says more than its HTTP status does: the status alone is no failure here.
    [[nodiscard]] bool brokeDown(std::optional<int> status) const;
    /// Whether the body ended before the size that the server has announced, which the library misses when
    /// the connection closes in the same moment.
    [[nodiscard]] bool wasCutOff(std::optional<int> status) const;
    [[nodiscard]] std::optional<qint64> announcedSize() const;
    [[nodiscard]] QUrl redirection() const;

    QNetworkReply* m_reply;  ///< null once settled
    Terms m_terms;
    ScheduledCall m_idleTimer;  ///< ends a silent transfer
    QByteArray m_body;
    qint64 m_received = 0;  ///< bytes of the body
    QList<QSslError> m_sslErrors;
    QPromise<Result> m_promise;
    std::stop_token m_stop;
    std::optional<std::stop_callback<std::function<void()>>> m_onStop;
};

}  // namespace tralio
