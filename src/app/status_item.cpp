#include "app/status_item.h"

#include <QIcon>

#include <array>

#include "ui/kit/icon.h"
#include "ui/kit/theme.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

QIcon trayIcon() {
    QIcon icon;
    for (const qreal ratio : {1.0, 2.0, 3.0})
        icon.addPixmap(iconPixmap({u"character.bubble.fill"_s, 16}, color(ColorRole::AccentIcon), ratio));
    return icon;
}

}  // namespace

StatusItem::StatusItem() : m_icon(trayIcon()) {
    m_icon.setToolTip(u"Tralio"_s);
    m_icon.show();
}

void StatusItem::setAction(std::function<void()> action) {
    QObject::connect(&m_icon, &QSystemTrayIcon::activated, &m_icon,
                     [action = std::move(action)](QSystemTrayIcon::ActivationReason reason) {
                         // The second of two quick clicks comes as a double click, and is a click all the
                         // same.
                         if (reason != QSystemTrayIcon::Unknown && reason != QSystemTrayIcon::MiddleClick)
                             action();
                     });
}

std::optional<QRect> StatusItem::frame() const {
    const QRect geometry = m_icon.geometry();
    return geometry.isEmpty() ? std::nullopt : std::optional(geometry);
}

}  // namespace tralio
