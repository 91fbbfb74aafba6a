#pragma once

#include <QNetworkReply>
#include <QSslError>
#include <QUrl>

#include <chrono>

#include "common/localized_error.h"

namespace tralio {

/// Where the address of a request came from, and so whether the user is the one to mend it.
enum class AddressOrigin {
    enteredByUser,  ///< the base URL in the settings
    programsOwn,
};

/// A request that brought no complete reply, described for the user: what happened, with which server, and
/// what can be done about it.
class TransportError final : public LocalizedError {
public:
    /// What the network library reported for a request to `url`. `sslErrors` are the objections to the
    /// server's certificate, if that was the reason.
    [[nodiscard]] static TransportError fromNetworkError(QNetworkReply::NetworkError error, const QUrl& url,
                                                         const QList<QSslError>& sslErrors = {},
                                                         AddressOrigin origin = AddressOrigin::enteredByUser);
    [[nodiscard]] static TransportError cancelled();
    [[nodiscard]] static TransportError timedOut(const QUrl& url, std::chrono::milliseconds silence);
    [[nodiscard]] static TransportError replyTooLarge(const QUrl& url, qsizetype limitInBytes);

private:
    using LocalizedError::LocalizedError;
};

}  // namespace tralio
