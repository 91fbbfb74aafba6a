#pragma once

#include <functional>

#include "update/update_service.h"

namespace tralio {

/// What this build tells the update service: where its updates come from, and whose signature they bear.
[[nodiscard]] UpdateService::Host updateHost(std::function<void()> openWebsite);

}  // namespace tralio
