#pragma once

#include <QObject>

#include <functional>
#include <optional>

#include "hotkeys/keys.h"

class QKeyEvent;

namespace tralio {

/// While it exists, sees every key press in this program before shortcuts, menus and the focused control do,
/// and can swallow it; input methods are disabled meanwhile. Modifier keys alone, and keys without a virtual
/// key code, are not reported. Repeats of the key swallowed last are swallowed too, even after this object
/// is gone, until the key is pressed again.
class KeyDownMonitor final : public QObject {
    Q_OBJECT

public:
    /// The key with a native scan code, as the window system numbers keys.
    using KeyCodes = std::function<std::optional<KeyCode>(quint32 nativeScanCode)>;
    /// Returns whether to swallow the key. A key that is not swallowed may be reported several times, on its
    /// way from the window to the focused control and up again. Must not delete the monitor.
    using Handler = std::function<bool(const KeyCombination&)>;

    KeyDownMonitor(KeyCodes keyCodes, Handler handler, QObject* parent = nullptr);
    ~KeyDownMonitor() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] std::optional<KeyCombination> keyDown(const QKeyEvent& event) const;

    KeyCodes m_keyCodes;
    Handler m_handler;
    std::optional<quint32> m_swallowed;  ///< scan code of the key swallowed last
};

}  // namespace tralio
