#pragma once

#include <QUrl>

#include "programs/http/transport_words.h"

namespace tralio {

/// Nothing when a request that `from` redirects may go on to `target`; else what the user is told. One to the
/// user's address carries the key, which stays with its origin: scheme, host and port.
[[nodiscard]] QString whyNotToFollow(const QUrl& from, const QUrl& target, AddressOrigin origin);

}  // namespace tralio
