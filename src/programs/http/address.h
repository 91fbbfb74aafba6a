#pragma once

#include <string>

namespace tralio {

/// An address in its parts, normalised so that equal destinations have equal texts. Missing parts are empty.
struct Address {
    std::string scheme;  ///< in lower case
    std::string host;    ///< in lower case and ASCII (punycode); IPv6 with its brackets
    int port = 0;        ///< 0 if the address has none
    std::string name;    ///< the name of the server in messages to the user
    /// The whole address without default port, fragment, user name and password; the last three are never
    /// sent.
    std::string text;
};

/// The parts of an absolute address. If it is not valid, only the scheme may be set.
[[nodiscard]] Address addressOf(const std::string& text);

/// The target of `reference`, which may be relative, seen from `base`.
[[nodiscard]] Address resolved(const Address& base, const std::string& reference);

/// Whether scheme, host and port of both are equal.
[[nodiscard]] bool isSameOrigin(const Address& one, const Address& other);

/// The port of an address, or the default port of its scheme.
[[nodiscard]] int portOf(const Address& address);

/// The host, with the port if the address names one.
[[nodiscard]] std::string authorityOf(const Address& address);

}  // namespace tralio
