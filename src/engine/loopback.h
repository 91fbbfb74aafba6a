#pragma once

#include <string>

namespace tralio {

/// Whether a host is this machine itself, so that nothing crosses a network.
/// With a trailing dot it is not: libcurl asks the name servers for "localhost." and "127.0.0.1.".
/// @param host in lower case; an IPv6 address with or without brackets
[[nodiscard]] bool isLoopback(std::string host);

}  // namespace tralio
