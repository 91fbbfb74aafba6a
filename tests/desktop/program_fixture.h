#pragma once

#include "desktop/program_run.h"
#include "desktop/virtual_desktop.h"
#include "support/testing.h"

namespace tralio {

/// The program on a desktop of one test's own.
class OnDesktop : public testing::Test {
protected:
    VirtualDesktop desktop;
    ProgramRun program{desktop};
};

}  // namespace tralio
