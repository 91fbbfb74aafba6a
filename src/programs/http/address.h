#pragma once

#include <string>

namespace tralio {

/// An address in its parts, in one form for all that lead to one place. What it does not have is empty.
struct Address {
    std::string scheme;  ///< in small letters
    std::string host;    ///< likewise, in ASCII; of IPv6 with its brackets
    int port = 0;        ///< 0 where it tells none
    std::string name;    ///< how the user is told of the server
    /// All of it but usual port, part of the page, and name and password, which go nowhere.
    std::string text;
};

/// The parts of a whole address. What cannot be read as one has a scheme at the most.
[[nodiscard]] Address addressOf(const std::string& text);

/// Where `reference`, which may be a part of an address, leads from `base`.
[[nodiscard]] Address resolved(const Address& base, const std::string& reference);

/// Whether two addresses agree in scheme, host and port.
[[nodiscard]] bool isSameOrigin(const Address& one, const Address& other);

/// The port of an address, told or not.
[[nodiscard]] int portOf(const Address& address);

/// The host, and the port if it is told.
[[nodiscard]] std::string authorityOf(const Address& address);

}  // namespace tralio
