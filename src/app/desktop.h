#pragma once

#include <memory>

#include "app/popover.h"
#include "hotkeys/hot_key_service.h"

namespace tralio {

/// What the session offers of the services that the program asks of a desktop, chosen once at start and told
/// in the log.
class Desktop {
public:
    virtual ~Desktop() = default;

    [[nodiscard]] static std::unique_ptr<Desktop> probe();

    [[nodiscard]] virtual HotKeyService::Platform hotKeyPlatform(Clock& clock) = 0;
    [[nodiscard]] virtual Popover::WindowSystem windowSystem() = 0;
};

}  // namespace tralio
