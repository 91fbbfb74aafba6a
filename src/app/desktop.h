#pragma once

#include <memory>

#include "app/window_system.h"
#include "hotkeys/hot_key_service.h"
#include "hotkeys/late_selection.h"

namespace tralio {

class CaptureTool;

/// What the session offers of the services that the program asks of a desktop, chosen once at start and told
/// in the log.
class Desktop {
public:
    virtual ~Desktop() = default;

    /// `clock` outlives the desktop.
    [[nodiscard]] static std::unique_ptr<Desktop> probe(Clock& clock);

    [[nodiscard]] virtual HotKeyService::Platform hotKeyPlatform(Clock& clock) = 0;
    [[nodiscard]] virtual WindowSystem& windowSystem() = 0;
    [[nodiscard]] virtual CaptureTool& captureTool() = 0;

    /// Empty in sessions that show the selection at any time.
    [[nodiscard]] virtual LateSelectionReader selectionOnceFocused() { return {}; }
};

}  // namespace tralio
