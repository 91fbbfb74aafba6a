#include "engine/loopback.h"

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
    // The toolkit's addresses have the four numbers, and no name of a host ends in one.
    return host.startsWith(u"127.") && host.back().isDigit();
}

}  // namespace tralio
