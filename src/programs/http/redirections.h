#pragma once

#include <string>
#include <vector>

#include "programs/http/address.h"
#include "programs/http/transport_words.h"

namespace tralio {

/// Whether a reply with this status and a Location header redirects the request.
[[nodiscard]] bool isRedirection(long status);

/// Why no request can be sent to that address, as an error message; empty if one can.
[[nodiscard]] std::string whyNotToGoTo(const Address& address, AddressOrigin origin);

/// Why a request redirected by `from` must not go on to `target`, as an error message; empty if it may. A
/// request to the user's address carries the API key, which must not leave its origin (scheme, host and
/// port).
[[nodiscard]] std::string whyNotToFollow(const Address& from, const Address& target, AddressOrigin origin);

/// The addresses that a request has passed.
class RedirectionTrail final {
public:
    /// As the function `whyNotToFollow`, and also refuses endless redirections: too many steps, or an address
    /// to which the text would be sent a second time.
    [[nodiscard]] std::string whyNotToFollow(
        const Address& from, const Address& target, bool withText, AddressOrigin origin);

private:
    std::vector<std::string> m_passed;
};

}  // namespace tralio
