#pragma once

#include <QSystemTrayIcon>

#include "app/popover_host.h"

namespace tralio {

/// The tray item: the program's icon and name. Comes and goes with the tray.
class StatusItem final : public StatusItemHost {
public:
    StatusItem();

    void setAction(std::function<void()> action) override;
    std::optional<QRect> frame() const override;

private:
    QSystemTrayIcon m_icon;
};

}  // namespace tralio
