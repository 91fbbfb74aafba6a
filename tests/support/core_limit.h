#pragma once

#include <algorithm>
#include <sys/resource.h>
#include <sys/types.h>

namespace tralio {

/// Whether no core of a process of ours is dumped, wherever the machine sends them. A limit of 0 keeps them
/// out of files only; one of 1 byte is too small for any file, and is what the kernel takes for "none" where
/// a pipe gets them.
inline bool dumpsNoCore(qint64 process) {
    rlimit ours{};
    rlimit limit{};
    return getrlimit(RLIMIT_CORE, &ours) == 0 &&
        prlimit(static_cast<pid_t>(process), RLIMIT_CORE, nullptr, &limit) == 0 &&
        limit.rlim_cur == std::min<rlim_t>(1, ours.rlim_max);
}

}  // namespace tralio
