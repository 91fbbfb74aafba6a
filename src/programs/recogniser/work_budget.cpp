#include "programs/recogniser/work_budget.h"

#include <ctime>

namespace tralio {

double WorkBudget::processorTime() {
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

}  // namespace tralio
