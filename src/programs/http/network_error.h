#pragma once

#include <QNetworkReply>
#include <QSslError>

#include "engine/transport_error.h"

namespace tralio {

/// Where the address of a request came from, and so whether the user is the one to mend it.
enum class AddressOrigin {
    enteredByUser,  ///< the base URL in the settings
    programsOwn,
};

/// What the network library reported for a request to `url`. `sslErrors` are the objections to the server's
/// certificate, if that was the reason.
[[nodiscard]] TransportError networkError(QNetworkReply::NetworkError error, const QUrl& url,
    const QList<QSslError>& sslErrors = {}, AddressOrigin origin = AddressOrigin::enteredByUser);

}  // namespace tralio
