#pragma once

#include <QMargins>
#include <QWindow>

#include <functional>

namespace tralio {

/// What a session offers for a window like the popover, beyond Qt.
class WindowSystem {
public:
    enum class Input {
        buttonPressed,
        buttonReleased,
        pointerMoved,
        switchingKey  ///< Alt or Super, pressed or released
    };
    using InputHandler = std::function<void(Input)>;

    WindowSystem() = default;
    WindowSystem(const WindowSystem&) = delete;
    WindowSystem& operator=(const WindowSystem&) = delete;
    virtual ~WindowSystem() = default;

    /// Whether windows may be translucent, and, as a whole, fade.
    [[nodiscard]] virtual bool isCompositing() = 0;
    [[nodiscard]] virtual bool fades() = 0;

    /// Whether a window stands where it wants to, and not in the middle of the screen, its shadow included.
    [[nodiscard]] virtual bool placesWindows() = 0;

    /// Says how much of a window is shadow, in its own pixels, before it is shown. A window manager that is
    /// not told keeps the shadow on the screen, and moves or cuts the window for it.
    virtual void setShadow(WId window, const QMargins& margins) = 0;
    /// Whether a window that is shown is on another desktop (workspace) than the user. False if unknown.
    [[nodiscard]] virtual bool isOnOtherDesktop(WId window) = 0;
    /// Brings a window that has just been shown to the front, with the keyboard.
    virtual void activate(WId window) = 0;
    /// Whether a window is the one in front, also while a grab keeps the keyboard from it. False where nobody
    /// tells.
    [[nodiscard]] virtual bool isActive(WId window) = 0;

    /// Whether the pointer is over a window that does not take the focus and helps with typing or notifies: a
    /// click there does not mean that the user has gone elsewhere. False if unknown.
    [[nodiscard]] virtual bool isOverAid() = 0;

    /// Takes the clicks at the place of a window, also once that is hidden, until `giveClicksBack`. Does
    /// nothing where the session lets no program do so.
    virtual void takeClicksAt(WId window) = 0;
    virtual void giveClicksBack() = 0;

    /// Reports what the user does, also outside our windows as far as the session lets programs know, until
    /// the handler is replaced by an empty one.
    virtual void watchInput(InputHandler handler) = 0;
};

/// For sessions that offer nothing beyond Qt.
class ToolkitWindowSystem final : public WindowSystem {
public:
    enum class Compositing { no, yes };

    explicit ToolkitWindowSystem(Compositing compositing) : m_compositing(compositing) {}

    bool isCompositing() override { return m_compositing == Compositing::yes; }
    bool fades() override { return false; }
    bool placesWindows() override { return false; }
    void setShadow(WId /*window*/, const QMargins& /*margins*/) override {}
    bool isOnOtherDesktop(WId /*window*/) override { return false; }
    void activate(WId /*window*/) override {}
    bool isActive(WId /*window*/) override { return false; }
    bool isOverAid() override { return false; }
    void takeClicksAt(WId /*window*/) override {}
    void giveClicksBack() override {}
    void watchInput(InputHandler /*handler*/) override {}

private:
    Compositing m_compositing;
};

}  // namespace tralio
