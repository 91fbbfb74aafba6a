#include "platform/linux/process/memory_privacy.h"

#include <algorithm>
#include <sys/resource.h>

namespace tralio::memory_privacy {

void begin() {
    rlimit limit{};
    getrlimit(RLIMIT_CORE, &limit);
    // 0 would not hold where cores go to a program through a pipe; 1 is the kernel's word for "none" there,
    // and too small for a file. What we open may raise it again.
    limit.rlim_cur = std::min<rlim_t>(1, limit.rlim_max);
    setrlimit(RLIMIT_CORE, &limit);
}

}  // namespace tralio::memory_privacy
