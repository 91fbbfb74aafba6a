#pragma once

#include <cstdlib>
#include <grp.h>
#include <sys/prctl.h>
#include <unistd.h>

namespace tralio {

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
