#include "programs/recogniser/pixels/memory_allowance.h"

#include <QFile>

#include <algorithm>
#include <sys/resource.h>
#include <unistd.h>

namespace tralio {
namespace {

/// What the process has mapped, in bytes.
rlim_t addressSpace() {
    QFile pages(QStringLiteral("/proc/self/statm"));
    if (!pages.open(QIODevice::ReadOnly))
        return RLIM_INFINITY;
    return pages.readLine().split(' ').first().toULongLong() * static_cast<rlim_t>(sysconf(_SC_PAGESIZE));
}

/// Up to the process's own limit, which stays.
void limitAddressSpace(rlim_t bytes) {
    rlimit limit{};
    if (getrlimit(RLIMIT_AS, &limit) != 0)
        return;
    limit.rlim_cur = std::min(bytes, limit.rlim_max);
    setrlimit(RLIMIT_AS, &limit);
}

}  // namespace

MemoryAllowance::MemoryAllowance(qint64 bytes) {
    const rlim_t present = addressSpace();
    limitAddressSpace(present == RLIM_INFINITY ? present : present + static_cast<rlim_t>(bytes));
}

MemoryAllowance::~MemoryAllowance() {
    limitAddressSpace(RLIM_INFINITY);
}

}  // namespace tralio
