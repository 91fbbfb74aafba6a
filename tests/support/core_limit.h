#pragma once

#include <algorithm>
#include <sys/resource.h>
#include <sys/types.h>

namespace tralio {

/// Whether the process dumps no core, wherever the machine sends cores. A limit of 0 only prevents files; a
/// limit of 1 byte is too small for any file, and is what the kernel takes for "none" where cores go to a
/// pipe.
inline bool dumpsNoCore(qint64 process) {
    rlimit ours{};
    rlimit limit{};
    return getrlimit(RLIMIT_CORE, &ours) == 0 &&
        prlimit(static_cast<pid_t>(process), RLIMIT_CORE, nullptr, &limit) == 0 &&
        limit.rlim_cur == std::min<rlim_t>(1, ours.rlim_max);
}

}  // namespace tralio
