#pragma once

#include <QNetworkReply>
#include <QSslError>
#include <QUrl>

#include <chrono>

#include "common/localized_error.h"

namespace tralio {

/// A request that brought no complete reply, described for the user: what happened, with which server, and
/// what can be done about it.
class TransportError final : public LocalizedError {
public:
    /// What the network library reported for a request to `url`. `sslErrors` are the objections to the
    /// server's certificate, if that was the reason.
    [[nodiscard]] static TransportError fromNetworkError(QNetworkReply::NetworkError error, const QUrl& url,
                                                         const QList<QSslError>& sslErrors = {});
    [[nodiscard]] static TransportError cancelled();
    [[nodiscard]] static TransportError timedOut(const QUrl& url, std::chrono::milliseconds silence);
    [[nodiscard]] static TransportError replyTooLarge(const QUrl& url, qsizetype limitInBytes);

private:
    using LocalizedError::LocalizedError;
};

}  // namespace tralio
