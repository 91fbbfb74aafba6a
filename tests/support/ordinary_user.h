#pragma once

#include <cstdlib>
#include <sys/prctl.h>
#include <unistd.h>

namespace tralio {

/// While one of these lives, a test that was started by root has an ordinary user's rights: to root no file
/// is read-only, and nothing would fail.
class OrdinaryUser final {
public:
    OrdinaryUser() {
        constexpr uid_t nobody = 65534;
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
