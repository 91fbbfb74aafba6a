#pragma once

#include <QObject>

#include <functional>
#include <optional>

class QKeyEvent;

namespace tralio {

/// A key that goes down in one of this program's windows.
struct KeyDown {
    static constexpr quint16 escape = 53;

    quint16 keyCode = 0;  ///< virtual key code: the position, whatever the keyboard's layout writes there
    quint32 flags = 0;    ///< the modifiers held with it, as flags of key events

    bool operator==(const KeyDown&) const = default;
};

/// For as long as it exists, sees every key that goes down in this program before shortcuts, menus and the
/// focused control do, and may keep it from them; input methods rest meanwhile. Modifiers on their own are no
/// keys here, nor is what a keyboard has beside the positions that virtual key codes name.
class KeyDownMonitor final : public QObject {
    Q_OBJECT

public:
    /// The virtual key code of a native scan code, as the window system numbers keys.
    using KeyCodes = std::function<std::optional<quint16>(quint32 nativeScanCode)>;
    /// Answers whether the key is swallowed. A key that is let through may be shown several times, on its way
    /// from the window to the focused control and up again. Must not delete the monitor.
    using Handler = std::function<bool(const KeyDown&)>;

    KeyDownMonitor(KeyCodes keyCodes, Handler handler, QObject* parent = nullptr);
    ~KeyDownMonitor() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] std::optional<KeyDown> keyDown(const QKeyEvent& event) const;

    KeyCodes m_keyCodes;
    Handler m_handler;
};

}  // namespace tralio
