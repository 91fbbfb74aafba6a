#include "programs/recogniser/reading/work_budget.h"

#include <ctime>

namespace tralio {

double WorkBudget::processorTime() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

}  // namespace tralio
