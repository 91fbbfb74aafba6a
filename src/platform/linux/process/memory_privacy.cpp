#include "platform/linux/process/memory_privacy.h"

#include <sys/prctl.h>
#include <sys/resource.h>

namespace tralio::memory_privacy {

void begin() {
    prctl(PR_SET_DUMPABLE, 0, 0, 0, 0);
    rlimit limit{};
    getrlimit(RLIMIT_CORE, &limit);
    limit.rlim_cur = 0;  // the programs that we open may raise it again
    setrlimit(RLIMIT_CORE, &limit);
}

Suspension::Suspension() : m_wasPrivate(prctl(PR_GET_DUMPABLE, 0, 0, 0, 0) == 0) {
    if (m_wasPrivate)
        prctl(PR_SET_DUMPABLE, 1, 0, 0, 0);
}

Suspension::~Suspension() {
    if (m_wasPrivate)
        prctl(PR_SET_DUMPABLE, 0, 0, 0, 0);
}

}  // namespace tralio::memory_privacy
