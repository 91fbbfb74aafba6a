#pragma once

#include <QList>
#include <QRect>
#include <QString>

#include <functional>
#include <optional>

namespace tralio {

/// The window that hangs from the tray item and contains the whole user interface. The documents call it the
/// window.
class PopoverHost {
public:
    PopoverHost() = default;
    PopoverHost(const PopoverHost&) = delete;
    PopoverHost& operator=(const PopoverHost&) = delete;
    virtual ~PopoverHost() = default;

    /// Whether the user sees the popover. Still true just after a click elsewhere has closed it, since a
    /// click on the tray item is such a click, too.
    [[nodiscard]] virtual bool isShown() const = 0;

    /// Shows the popover at `anchor`, in front of all windows and with the keyboard focus; without an anchor
    /// at the top right of the screen with the pointer. If it is shown already, brings it to the front.
    virtual void show(std::optional<QRect> anchor) = 0;
    virtual void performClose() = 0;
};

/// An entry of the tray item's menu. An empty title is a separator.
struct StatusMenuEntry {
    QString title;
    std::function<void()> action = {};
};

/// The program's item in the desktop's tray.
class StatusItemHost {
public:
    StatusItemHost() = default;
    StatusItemHost(const StatusItemHost&) = delete;
    StatusItemHost& operator=(const StatusItemHost&) = delete;
    virtual ~StatusItemHost() = default;

    /// Sets the action of a plain click on the item.
    virtual void setAction(std::function<void()> action) = 0;
    /// Sets the menu of the secondary click. Call this before the event loop runs.
    virtual void setMenu(const QList<StatusMenuEntry>& entries) = 0;

    /// Whether there is a tray, so that the user can see the item.
    [[nodiscard]] virtual bool isInTray() const = 0;

    /// The item's place on the screen, if the tray reports it.
    [[nodiscard]] virtual std::optional<QRect> frame() const = 0;
};

}  // namespace tralio
