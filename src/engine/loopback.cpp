#include "engine/loopback.h"

#include <arpa/inet.h>

namespace tralio {

bool isLoopback(std::string host) {
    if (host.starts_with('[') && host.ends_with(']'))
        host = host.substr(1, host.size() - 2);
    in_addr four{};
    in6_addr six{};
    // The unspecified address also connects to this machine.
    if (inet_pton(AF_INET, host.c_str(), &four) == 1)
        return (ntohl(four.s_addr) >> 24) == 127 || four.s_addr == INADDR_ANY;
    if (inet_pton(AF_INET6, host.c_str(), &six) == 1)
        return IN6_IS_ADDR_LOOPBACK(&six) || IN6_IS_ADDR_UNSPECIFIED(&six) ||
            (IN6_IS_ADDR_V4MAPPED(&six) && six.s6_addr[12] == 127);
    return host == "localhost" || host.ends_with(".localhost");
}

}  // namespace tralio
