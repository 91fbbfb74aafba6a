#pragma once

#include <memory>

#include "app/window_system.h"
#include "hotkeys/hot_key_service.h"
#include "hotkeys/late_selection.h"

namespace tralio {

class CaptureTool;

/// The desktop services that the session offers. They are chosen once at start, and the log says which.
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
