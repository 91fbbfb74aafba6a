#pragma once

#include <QList>
#include <QRect>
#include <QString>

#include <functional>
#include <optional>

namespace tralio {

/// The window that hangs from the status item and holds the whole user interface.
class PopoverHost {
public:
    PopoverHost() = default;
    PopoverHost(const PopoverHost&) = delete;
    PopoverHost& operator=(const PopoverHost&) = delete;
    virtual ~PopoverHost() = default;

    /// Whether the user sees the popover; also just after a click elsewhere has closed it, since a click on
    /// the status item is such a click too.
    [[nodiscard]] virtual bool isShown() const = 0;

    /// Shows the popover at `anchor`, in front of every window and with the keyboard focus; at the top right
    /// of the screen with the pointer when the anchor is not known. Also brings a shown one to the front.
    virtual void show(std::optional<QRect> anchor) = 0;
    virtual void performClose() = 0;
};

/// What the status item's menu offers. One without a title is a line between two others.
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

    /// For the click that means the item itself.
    virtual void setAction(std::function<void()> action) = 0;
    /// For the secondary click. To be called before the event loop runs.
    virtual void setMenu(const QList<StatusMenuEntry>& entries) = 0;

    /// Whether there is a tray, so that the user can see the item.
    [[nodiscard]] virtual bool isInTray() const = 0;

    /// Where the item stands on the screen, if the tray tells.
    [[nodiscard]] virtual std::optional<QRect> frame() const = 0;
};

}  // namespace tralio
