#pragma once

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <grp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

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

/// While one of these lives, no file of this process can grow past a size: as on a disk that is full.
class FileSizeLimit final {
public:
    explicit FileSizeLimit(rlim_t bytes) : m_handler(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{.rlim_cur = bytes, .rlim_max = m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }

private:
    rlimit m_before{};
    sighandler_t m_handler;
};

inline constexpr uid_t nobody = 65534;

/// Made before anything else in a process that root has started, turns it into an ordinary user's for good.
class OrdinaryProcess final {
public:
    OrdinaryProcess() {
        const bool done =
            getuid() != 0 || (setgroups(0, nullptr) == 0 && setgid(nobody) == 0 && setuid(nobody) == 0);
        if (!done)
            std::abort();
    }
};

/// While one of these lives, a test that was started by root has an ordinary user's rights: to root no file
/// is read-only, and nothing would fail.
class OrdinaryUser final {
public:
    OrdinaryUser() {
        if (m_uid == 0 && seteuid(nobody) != 0)
            std::abort();
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;
    ~OrdinaryUser() {
        if (seteuid(m_uid) != 0)
            std::abort();
        // Changing the user made the process unreadable to the leak check that runs at its end.
        prctl(PR_SET_DUMPABLE, 1);
    }

private:
    const uid_t m_uid = geteuid();
};

}  // namespace tralio
