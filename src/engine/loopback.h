#pragma once

#include <string>

namespace tralio {

/// Whether a host is this machine itself: what goes there crosses no network.
/// @param host in small letters; an address of IPv6 with its brackets or without
[[nodiscard]] bool isLoopback(std::string host);

}  // namespace tralio
