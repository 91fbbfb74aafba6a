#pragma once

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <grp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

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

/// While it exists, no file of this process can grow beyond a size, as on a full disk.
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

/// Turns a process that was started by root into an ordinary user's for good. Construct it before anything
/// else.
class OrdinaryProcess final {
public:
    OrdinaryProcess() {
        const bool done =
            getuid() != 0 || (setgroups(0, nullptr) == 0 && setgid(nobody) == 0 && setuid(nobody) == 0);
        if (!done)
            std::abort();
    }
};

/// While it exists, a test run by root has an ordinary user's rights: for root no file is read-only, and no
/// access fails.
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
        // The change of user made the process unreadable to the leak check at its end.
        prctl(PR_SET_DUMPABLE, 1);
    }

private:
    const uid_t m_uid = geteuid();
};

}  // namespace tralio
