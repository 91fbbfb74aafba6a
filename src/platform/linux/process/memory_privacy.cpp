#include "platform/linux/process/memory_privacy.h"

#include <sys/resource.h>

namespace tralio::memory_privacy {

void begin() {
    rlimit limit{};
    getrlimit(RLIMIT_CORE, &limit);
    limit.rlim_cur = 0;  // the programs that we open may raise it again
    setrlimit(RLIMIT_CORE, &limit);
}

}  // namespace tralio::memory_privacy
