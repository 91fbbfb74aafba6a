#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <QVariantAnimation>
#include <QWidget>

#include <functional>

#include "app/popover_host.h"

namespace tralio {

class WindowFrame;

/// The popover as an ordinary frameless window: popup windows would take the keyboard and the pointer away
/// from the desktop, and trays refuse them. It closes when another window becomes active, and on Escape. It
/// stays while another program takes the keyboard for a moment, as the keys of an input method or the volume
/// do, and while the mouse is held down: a press in another window may be the beginning of a drag that ends
/// here. A window manager that is slow to give it the keyboard is asked again for a while.
///
/// Where a compositor runs it fades in and out. It counts as shown, with the keyboard, from the first moment
/// of the one motion, and as closed from the first moment of the other.
class Popover final : public QWidget, public PopoverHost {
    Q_OBJECT

public:
    /// What the session does for windows of this kind. Every function may be empty.
    struct WindowSystem {
        std::function<bool()> isCompositing;  ///< windows may be translucent
        bool fades = false;                   ///< and as a whole, too
        std::function<void(WId)> activate;    ///< when the window is shown
        std::function<bool(WId)>
            isActive;  ///< tells a window behind from one that a grab keeps the keyboard from
        std::function<bool()> isMousePressed;  ///< anywhere on the screen
    };

    /// `makeContent` is called when the popover opens for the first time: until then it costs no memory.
    Popover(std::function<QWidget*()> makeContent, WindowSystem windowSystem);

    bool isShown() const override;
    void show(std::optional<QRect> anchor) override;
    void performClose() override;

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void place(std::optional<QRect> anchor);
    void appear(int motion);
    void disappear();
    /// What a motion takes here.
    [[nodiscard]] int motionTime(int time) const;
    void setPresence(qreal presence);
    void bringToFront();
    void askForFocus();
    void watchFocus();

    std::function<QWidget*()> m_makeContent;
    WindowSystem m_windowSystem;
    WindowFrame* m_frame = nullptr;
    bool m_shown = false;
    QPoint m_place;
    QVariantAnimation m_motion;
    QTimer m_focusWatch;
    bool m_mouseWasPressed = false;
    QElapsedTimer m_sinceShown;
    QElapsedTimer m_sinceAsked;  ///< for the keyboard; invalid while it has it
    bool m_hadFocus = false;     ///< since it was shown
    QElapsedTimer m_closedByDeactivation;
};

}  // namespace tralio
