#include "platform/linux/process/memory_privacy.h"

#include <algorithm>
#include <sys/resource.h>

namespace tralio::memory_privacy {

void begin() {
    rlimit limit{};
    getrlimit(RLIMIT_CORE, &limit);
    // A limit of 0 is ignored where core_pattern pipes cores to a program; there the kernel takes 1 for "no
    // core", and one byte is too small for a core file. Only the soft limit is set, so programs that we
    // start may raise it again.
    limit.rlim_cur = std::min<rlim_t>(1, limit.rlim_max);
    setrlimit(RLIMIT_CORE, &limit);
}

}  // namespace tralio::memory_privacy
