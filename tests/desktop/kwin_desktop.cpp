#include "desktop/kwin_desktop.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QStandardPaths>

#include <stdexcept>

#include "support/bus_configuration.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

const QString socket = u"wayland-tralio"_s;

}  // namespace

KwinDesktop::KwinDesktop() {
    setVariable(u"XDG_CURRENT_DESKTOP"_s, u"KDE"_s);
    installProgram();
    startBus();
    startCompositor();
    setVariable(u"WAYLAND_DISPLAY"_s, socket);
    // For what the bus starts, whose own environment is older than the compositor.
    run(u"dbus-update-activation-environment"_s, {u"WAYLAND_DISPLAY"_s, u"QT_QPA_PLATFORM=wayland"_s});
    // The compositor calls the portal too: that would start it before there is a display for its backend,
    // without which the portal then stays.
    offerServices(home(),
        {u"org.freedesktop.portal.Desktop"_s, u"org.freedesktop.impl.portal.PermissionStore"_s,
            u"org.freedesktop.impl.portal.desktop.kde"_s});
}

void KwinDesktop::installProgram() {
    const QString applications = home() + u"/.local/share/applications"_s;
    QDir().mkpath(applications);
    const QString file = u"/org.tralio.Tralio.desktop"_s;
    QFile::copy(QStringLiteral(TRALIO_SHARE) + file, applications + file);
    // A file whose program is not found counts for nothing.
    setVariable(
        u"PATH"_s, QFileInfo(QStringLiteral(TRALIO_PROGRAM)).path() + u':' + environment().value(u"PATH"_s));
}

void KwinDesktop::startCompositor() {
    setVariable(u"KWIN_COMPOSE"_s, u"Q"_s);  // no GL: slow without a graphics card
    // The installed file has a capability, which an ordinary user's sandbox refuses; a copy has none.
    const QString ours = home() + u"/kwin_wayland"_s;
    QFile::copy(QStandardPaths::findExecutable(u"kwin_wayland"_s), ours);
    start(ours,
        {u"--virtual"_s, u"--width"_s, u"1280"_s, u"--height"_s, u"1024"_s, u"--socket"_s, socket,
            u"--no-lockscreen"_s});
    const QString path = environment().value(u"XDG_RUNTIME_DIR"_s) + u'/' + socket;
    const bool runs = waitUntil(
        [&] {
            return QFile::exists(path) &&
                run(u"gdbus"_s,
                    {u"introspect"_s, u"--session"_s, u"--dest"_s, u"org.kde.kglobalaccel"_s,
                        u"--object-path"_s, u"/kglobalaccel"_s})
                    .contains(u"org.kde.KGlobalAccel");
        },
        30);
    if (!runs)
        throw std::runtime_error("kwin_wayland does not start");
}

QString KwinDesktop::askForShortcuts(
    const QString& path, const QString& method, const QStringList& arguments) const {
    return run(u"gdbus"_s,
        QStringList{u"call"_s, u"--session"_s, u"--dest"_s, u"org.kde.kglobalaccel"_s, u"--object-path"_s,
            path, u"--method"_s, u"org.kde."_s + method} +
            arguments);
}

QString KwinDesktop::component() const {
    // By the application's id; where the portal knows none, by the token of our session with it.
    const QString all = askForShortcuts(u"/kglobalaccel"_s, u"KGlobalAccel.allComponents"_s);
    static const QRegularExpression ours(u"/component/(org_tralio_Tralio|(token_)?tralio)\\b"_s);
    return ours.match(all).captured();
}

QString KwinDesktop::shortcuts() const {
    return askForShortcuts(component(), u"kglobalaccel.Component.shortcutNames"_s);
}

void KwinDesktop::pressTextHotKey() const {
    askForShortcuts(
        component(), u"kglobalaccel.Component.invokeShortcut"_s, {u"translate-selection.LOGO+SHIFT+d"_s});
}

void KwinDesktop::endPortalBackend() const {
    // "(uint32 1234,)"
    const QString process = run(u"gdbus"_s,
        {u"call"_s, u"--session"_s, u"--dest"_s, u"org.freedesktop.DBus"_s, u"--object-path"_s, u"/"_s,
            u"--method"_s, u"org.freedesktop.DBus.GetConnectionUnixProcessID"_s,
            u"org.freedesktop.impl.portal.desktop.kde"_s});
    run(u"kill"_s, {process.section(u' ', 1).chopped(2)});
}

bool KwinDesktop::hasWindow(const QString& title) const {
    return askForWindows(u"Match"_s, {title}).contains(title);
}

void KwinDesktop::bringToFront(const QString& title) const {
    // "([('0_{…}', …": what to do, and with which window.
    const QString match = askForWindows(u"Match"_s, {title}).section(u'\'', 1, 1);
    askForWindows(u"Run"_s, {match, QString()});
}

QString KwinDesktop::askForWindows(const QString& method, const QStringList& arguments) const {
    return run(u"gdbus"_s,
        QStringList{u"call"_s, u"--session"_s, u"--dest"_s, u"org.kde.KWin"_s, u"--object-path"_s,
            u"/WindowsRunner"_s, u"--method"_s, u"org.kde.krunner1."_s + method} +
            arguments);
}

}  // namespace tralio
