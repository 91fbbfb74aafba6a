#include "ui/kit/accessibility.h"

#include <QAccessibleWidget>
#include <QWidget>

#include <utility>

namespace tralio {
namespace {

QAccessibleInterface* interfaceFor(const QString& className, QObject* object) {
    static constexpr std::pair<QLatin1StringView, QAccessible::Role> roles[] = {
        {QLatin1StringView("tralio::Label"), QAccessible::StaticText},
        {QLatin1StringView("tralio::Badge"), QAccessible::StaticText},
        {QLatin1StringView("tralio::KeyCap"), QAccessible::StaticText},
        {QLatin1StringView("tralio::ErrorStrip"), QAccessible::AlertMessage},
        {QLatin1StringView("tralio::PopupMenu"), QAccessible::PopupMenu},
        {QLatin1StringView("tralio::TabStrip"), QAccessible::PageTabList},
        {QLatin1StringView("tralio::Divider"), QAccessible::Separator},
        {QLatin1StringView("tralio::IconView"), QAccessible::Graphic},
        {QLatin1StringView("tralio::Spinner"), QAccessible::Animation},
    };
    auto* widget = qobject_cast<QWidget*>(object);
    for (const auto& [name, role] : roles)
        if (widget != nullptr && className == name)
            return new QAccessibleWidget(widget, role);
    return nullptr;
}

}  // namespace

void installAccessibleRoles() {
    static const bool installed = [] {
        QAccessible::installFactory(interfaceFor);
        return true;
    }();
    Q_UNUSED(installed)
}

}  // namespace tralio
