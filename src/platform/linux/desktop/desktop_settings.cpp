#include "platform/linux/desktop/desktop_settings.h"

#include <QDesktopServices>
#include <QProcess>
#include <QStandardPaths>

#include <array>

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

struct SettingsProgram {
    QStringView desktop;  ///< as in XDG_CURRENT_DESKTOP
    QStringView program;
    QStringView accessibilityPage;
    QStringView privacyPage;
};

constexpr std::array settingsPrograms{
    SettingsProgram{u"GNOME", u"gnome-control-center", u"universal-access", u"privacy"},
    SettingsProgram{u"KDE", u"systemsettings", u"kcm_access", u"kcm_access"},
    SettingsProgram{u"KDE", u"systemsettings5", u"kcm_access", u"kcm_access"},
    SettingsProgram{u"XFCE", u"xfce4-accessibility-settings", u"", u""},
    SettingsProgram{u"X-Cinnamon", u"cinnamon-settings", u"universal-access", u"privacy"},
    SettingsProgram{u"MATE", u"mate-control-center", u"", u""},
};

void openSettings(bool accessibility) {
    const QStringList desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':');
    for (const SettingsProgram& settings : settingsPrograms) {
        const QString program = settings.program.toString();
        if (!desktops.contains(settings.desktop) || QStandardPaths::findExecutable(program).isEmpty())
            continue;
        const QStringView page = accessibility ? settings.accessibilityPage : settings.privacyPage;
        QProcess::startDetached(program, page.isEmpty() ? QStringList() : QStringList(page.toString()));
        return;
    }
}

}  // namespace

void openDesktopURL(const QUrl& url) {
    if (url.scheme() == u"x-apple.systempreferences")
        openSettings(url.query() == u"Privacy_Accessibility");
    else if (url.isValid())
        QDesktopServices::openUrl(url);
}

}  // namespace tralio
