#pragma once

#include <QList>
#include <QUrl>

#include "programs/http/transport_words.h"

namespace tralio {

/// Whether two addresses agree in scheme, host and port.
[[nodiscard]] bool isSameOrigin(const QUrl& one, const QUrl& other);

/// The port of an address, told or not.
[[nodiscard]] int portOf(const QUrl& url);

/// Whether an answer of this status, with an address in it, sends the request on.
[[nodiscard]] bool isRedirection(int status);

/// Nothing when a request can be sent to that address; else what the user is told.
[[nodiscard]] QString whyNotToGoTo(const QUrl& url, AddressOrigin origin);

/// Nothing when a request that `from` redirects may go on to `target`; else what the user is told. One to the
/// user's address carries the key, which stays with its origin: scheme, host and port.
[[nodiscard]] QString whyNotToFollow(const QUrl& from, const QUrl& target, AddressOrigin origin);

/// The addresses that a request has come by.
class RedirectionTrail final {
public:
    /// As `whyNotToFollow`, and words for a way without an end: too many steps, or an address to which the
    /// text would go a second time.
    [[nodiscard]] QString whyNotToFollow(
        const QUrl& from, const QUrl& target, bool withText, AddressOrigin origin);

private:
    QList<QUrl> m_passed;
};

}  // namespace tralio
