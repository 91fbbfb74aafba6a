#pragma once

#include <QVariantAnimation>
#include <QWidget>

#include <functional>

#include "app/popover_focus.h"
#include "app/popover_host.h"
#include "app/window_system.h"

namespace tralio {

class WindowFrame;

/// The popover as an ordinary frameless window: a popup window would grab the keyboard and the pointer of the
/// desktop, which trays refuse. It closes on Escape, and when PopoverFocus says so.
///
/// Where a compositor runs it fades in and out. It counts as shown, with the keyboard focus, from the first
/// moment of fading in, and as closed from the first moment of fading out.
class Popover final : public QWidget, public PopoverHost, private PopoverFocus::Window {
    Q_OBJECT

public:
    /// `makeContent` is called when the popover opens for the first time: until then the content costs no
    /// memory. The window system and the clock outlive the popover.
    Popover(std::function<QWidget*()> makeContent, WindowSystem& windowSystem, Clock& clock);
    ~Popover() override;

    bool isShown() const override;
    void show(std::optional<QRect> anchor) override;
    void performClose() override;

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void place(std::optional<QRect> anchor);
    void appear(int motion);
    void disappear();
    /// Whether it is shown, but on another desktop than the user's, or where a screen was that has gone.
    [[nodiscard]] bool isElsewhere() const;
    /// Whether its screen has become too small for the place where it is.
    [[nodiscard]] bool isCut() const;
    /// From now on it does not count as shown.
    void ends();
    void userDid(WindowSystem::Input what);
    /// The duration of an animation in this session, in milliseconds; 0 for none.
    [[nodiscard]] int motionTime(int time) const;
    void setPresence(qreal presence);

    bool isActive() const override;
    bool isInFront() const override;
    bool isUnderPointer() const override;
    bool isAidUnderPointer() const override { return m_windowSystem.isOverAid(); }
    void bringToFront() override;
    void awaitSecondPress();
    void closeForUser() override { disappear(); }

    std::function<QWidget*()> m_makeContent;
    WindowSystem& m_windowSystem;
    Clock& m_clock;
    PopoverFocus m_focus;
    WindowFrame* m_frame = nullptr;
    bool m_shown = false;
    QPoint m_place;
    QVariantAnimation m_motion;
    bool m_awaitsSecondPress = false;  ///< of a double click
    ScheduledCall m_doubleClickEnd;
};

}  // namespace tralio
