#pragma once

#include <string>

namespace tralio {

/// Whether a host is this machine itself, so that nothing crosses a network.
/// @param host in lower case; an IPv6 address with or without brackets
[[nodiscard]] bool isLoopback(std::string host);

}  // namespace tralio
