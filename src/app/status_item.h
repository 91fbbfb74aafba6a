#pragma once

#include <QSystemTrayIcon>

#include <functional>
#include <memory>
#include <optional>

#include "app/popover_host.h"
#include "platform/linux/tray/status_notifier_item.h"

namespace tralio {

/// The tray item: the program's icon and name. Comes and goes with the tray. It is on the session bus if the
/// tray takes items there, else a window embedded in the tray.
class StatusItem final : public StatusItemHost {
public:
    StatusItem();

    void setAction(std::function<void()> action) override { m_action = std::move(action); }
    void setMenu(const QList<StatusMenuEntry>& entries) override;
    bool isInTray() const override;
    std::optional<QRect> frame() const override;

private:
    void setOnBus(bool onBus);
    void activate() const;
    /// Opens our own menu, for trays that draw none.
    void openMenu(const QPoint& place) const;

    QIcon m_icon;
    StatusNotifierItem m_item;
    bool m_isOnBus = false;
    std::unique_ptr<QSystemTrayIcon> m_embedded;
    std::optional<QRect> m_clicked;
    std::function<void()> m_action;
    QList<StatusMenuEntry> m_menu;
};

}  // namespace tralio
