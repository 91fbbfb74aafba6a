#include "ui/kit/theme.h"

#include <QApplication>
#include <QWidget>

#include "ui/kit/accessibility.h"

namespace tralio {

Theme::Theme() : m_colors(Scheme::light, m_appearance.accent) {
    installAccessibleRoles();
}

Theme& Theme::current() {
    static Theme theme;
    return theme;
}

void Theme::setAppearance(const Appearance& appearance) {
    Theme& theme = current();
    if (theme.m_appearance == appearance)
        return;
    theme.m_appearance = appearance;
    theme.m_colors = Colors(appearance.dark ? Scheme::dark : Scheme::light, appearance.accent);
    Q_EMIT theme.changed();
    const QWidgetList widgets = QApplication::allWidgets();
    for (QWidget* widget : widgets)
        widget->update();
}

}  // namespace tralio
