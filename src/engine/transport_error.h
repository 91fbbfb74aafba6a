#pragma once

#include <QUrl>

#include <chrono>

#include "common/localized_error.h"

namespace tralio {

/// A request that brought no complete reply, described for the user: what happened, with which server, and
/// what can be done about it.
class TransportError final : public LocalizedError {
public:
    using LocalizedError::LocalizedError;

    [[nodiscard]] static TransportError cancelled();
    /// Of an address of the program's own that is none of http or https.
    [[nodiscard]] static TransportError foreignScheme();
    [[nodiscard]] static TransportError timedOut(const QUrl& url, std::chrono::milliseconds silence);
    [[nodiscard]] static TransportError replyTooLarge(const QUrl& url, qsizetype limitInBytes);
};

/// How a server is called to the user.
[[nodiscard]] QString serverName(const QUrl& url);

}  // namespace tralio
