#include "engine/loopback.h"

#include <QString>

#include <arpa/inet.h>

namespace tralio {

bool isLoopback(QStringView host) {
    if (host.endsWith(u'.'))
        host.chop(1);  // a name that is whole
    const QByteArray name = host.toUtf8().toLower();
    in_addr four{};
    in6_addr six{};
    // The address of no machine leads to this one.
    if (inet_pton(AF_INET, name.constData(), &four) == 1)
        return (ntohl(four.s_addr) >> 24) == 127 || four.s_addr == INADDR_ANY;
    if (inet_pton(AF_INET6, name.constData(), &six) == 1)
        return IN6_IS_ADDR_LOOPBACK(&six) || IN6_IS_ADDR_UNSPECIFIED(&six) ||
            (IN6_IS_ADDR_V4MAPPED(&six) && six.s6_addr[12] == 127);
    return name == "localhost" || name.endsWith(".localhost");
}

}  // namespace tralio
