#pragma once

#include <string>
#include <vector>

#include "programs/http/address.h"
#include "programs/http/transport_words.h"

namespace tralio {

/// Whether an answer of this status, with an address in it, sends the request on.
[[nodiscard]] bool isRedirection(long status);

/// Empty when a request can be sent to that address; else what the user is told.
[[nodiscard]] std::string whyNotToGoTo(const Address& address, AddressOrigin origin);

/// Empty when a request that `from` redirects may go on to `target`; else what the user is told. One to the
/// user's address carries the key, which stays with its origin: scheme, host and port.
[[nodiscard]] std::string whyNotToFollow(const Address& from, const Address& target, AddressOrigin origin);

/// The addresses that a request has come by.
class RedirectionTrail final {
public:
    /// As `whyNotToFollow`, and words for a way without an end: too many steps, or an address to which the
    /// text would go a second time.
    [[nodiscard]] std::string whyNotToFollow(
        const Address& from, const Address& target, bool withText, AddressOrigin origin);

private:
    std::vector<std::string> m_passed;
};

}  // namespace tralio
