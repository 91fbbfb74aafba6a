#include "engine/loopback.h"

#include <algorithm>

namespace tralio {

bool isLoopback(QStringView host) {
    constexpr QStringView mapped = u"::ffff:";
    if (host.endsWith(u'.'))
        host.chop(1);  // a name that is whole
    const bool isName = host.compare(u"localhost", Qt::CaseInsensitive) == 0 ||
        host.endsWith(u".localhost", Qt::CaseInsensitive);
    if (isName || host == u"::1")
        return true;
    if (host.startsWith(mapped))
        host = host.sliced(mapped.size());
    const auto isOfAddress = [](QChar c) { return c.isDigit() || c == u'.'; };
    return host.startsWith(u"127.") && std::all_of(host.begin(), host.end(), isOfAddress);
}

}  // namespace tralio
