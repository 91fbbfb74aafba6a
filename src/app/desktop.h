#pragma once

#include <memory>

#include "app/window_system.h"
#include "hotkeys/hot_key_service.h"

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

    /// Delivers the selection once a window of ours has the focus, in sessions that show it only then; empty
    /// in others.
    using SelectionReader = std::function<void(std::function<void(const QString&)>)>;
    [[nodiscard]] virtual SelectionReader selectionOnceFocused() { return {}; }
};

}  // namespace tralio
