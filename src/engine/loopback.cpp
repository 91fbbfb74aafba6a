#include "engine/loopback.h"

namespace tralio {

bool isLoopback(QStringView host) {
    if (host.compare(u"localhost", Qt::CaseInsensitive) == 0 || host == u"::1")
        return true;
    // The toolkit's addresses have the four numbers, and no name of a host ends in one.
    return host.startsWith(u"127.") && !host.isEmpty() && host.back().isDigit();
}

}  // namespace tralio
