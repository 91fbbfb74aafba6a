#include "platform/linux/desktop/text_scale.h"

#include <QDBusMessage>
#include <QDBusVariant>
#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QSettings>
#include <QStandardPaths>
#include <QVariant>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <optional>
#include <xcb/randr.h>
#include <xcb/xcb.h>

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

constexpr auto scaleVariable = "QT_SCALE_FACTOR";
constexpr int portalLimit = 300;  // milliseconds
constexpr double usualDpi = 96;
constexpr double most = 3;

struct XScreen {
    bool hasDpi = false;  ///< Xft.dpi, which all X toolkits obey, is set
    double room = most;   ///< how many times the window's minimum size fits on the smallest monitor
};

/// The smallest usable window, in pixels.
constexpr double leastWidth = 550;
constexpr double leastHeight = 440;

double roomIn(double width, double height) {
    return std::min(width / leastWidth, height / leastHeight);
}

double roomOn(xcb_connection_t* xcb, const xcb_screen_t& screen) {
    const std::unique_ptr<xcb_randr_get_monitors_reply_t, decltype(&free)> monitors(
        xcb_randr_get_monitors_reply(xcb, xcb_randr_get_monitors(xcb, screen.root, 1), nullptr), &free);
    double room = roomIn(screen.width_in_pixels, screen.height_in_pixels);
    if (monitors)
        for (auto at = xcb_randr_get_monitors_monitors_iterator(monitors.get()); at.rem > 0;
             xcb_randr_monitor_info_next(&at))
            room = std::min(room, roomIn(at.data->width, at.data->height));
    return std::max(room, 1.0);
}

XScreen xScreen() {
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(
        xcb_connect(nullptr, nullptr), &xcb_disconnect);
    xcb_connection_t* xcb = connection.get();
    if (xcb_connection_has_error(xcb))
        return {};
    const xcb_screen_t& screen = *xcb_setup_roots_iterator(xcb_get_setup(xcb)).data;
    constexpr uint32_t mostWords = 1 << 16;
    const auto request =
        xcb_get_property(xcb, 0, screen.root, XCB_ATOM_RESOURCE_MANAGER, XCB_ATOM_STRING, 0, mostWords);
    const std::unique_ptr<xcb_get_property_reply_t, decltype(&free)> resources(
        xcb_get_property_reply(xcb, request, nullptr), &free);
    XScreen result{.room = roomOn(xcb, screen)};
    if (resources)
        result.hasDpi = QByteArray(static_cast<const char*>(xcb_get_property_value(resources.get())),
            xcb_get_property_value_length(resources.get()))
                            .contains("Xft.dpi:");
    return result;
}

QString rememberedScale() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/tralio/text-scale"_s;
}

bool isScale(double value) {
    return std::isfinite(value) && value > 0;
}

std::optional<double> remembered() {
    QFile file(rememberedScale());
    const double last = file.open(QIODevice::ReadOnly) ? file.read(20).toDouble() : 0;
    return isScale(last) ? std::optional(last) : std::nullopt;
}

/// GNOME's text scale, which the portals of other desktops report, too; 1 if none tells.
double portalScale(const QDBusConnection& session) {
    auto read = QDBusMessage::createMethodCall(u"org.freedesktop.portal.Desktop"_s,
        u"/org/freedesktop/portal/desktop"_s, u"org.freedesktop.portal.Settings"_s, u"Read"_s);
    read << u"org.gnome.desktop.interface"_s << u"text-scaling-factor"_s;
    read.setAutoStartService(false);  // starting the portal takes a second when a session begins
    QVariant value = session.call(read, QDBus::Block, portalLimit).arguments().value(0);
    while (value.canConvert<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value.userType() == QMetaType::Double ? value.toDouble() : 1;
}

/// KDE's text scale, which is stored as a font resolution.
double kdeScale(bool isWayland) {
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    const QSettings fonts(QDir(folder).filePath(u"kcmfonts"_s), QSettings::IniFormat);
    const double dpi = fonts.value(isWayland ? u"forceFontDPIWayland"_s : u"forceFontDPI"_s).toDouble();
    return dpi > 0 ? dpi / usualDpi : 1;
}

/// `isWayland`: our windows are native Wayland ones. Only there `compositorScreens` is called.
double desktopScale(bool isWayland, const QDBusConnection& session,
    const std::function<std::vector<QSize>()>& compositorScreens) {
    const bool isKde = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':').contains(u"KDE");
    const std::optional<double> last = isKde ? kdeScale(isWayland) : remembered();
    const double wanted = last ? *last : portalScale(session);
    if (wanted == 1)
        return 1;  // as on most desktops: their screens need not be asked for
    XScreen screen = isWayland ? XScreen() : xScreen();
    if (screen.hasDpi)
        return 1;
    if (isWayland && wanted > 1)
        for (const QSize& size : compositorScreens())
            screen.room = std::max(std::min(screen.room, roomIn(size.width(), size.height())), 1.0);
    constexpr double least = 0.5;
    return std::clamp(wanted, least, std::min(most, screen.room));
}

}  // namespace

TextScale::TextScale(
    const QDBusConnection& session, const std::function<std::vector<QSize>()>& compositorScreens) {
    const bool isWayland = qEnvironmentVariable("QT_QPA_PLATFORM").startsWith(u"wayland");
    const double scale = desktopScale(isWayland, session, compositorScreens);
    if (scale == 1)
        return;
    m_former = qgetenv(scaleVariable);
    const double own = m_former->toDouble();
    qputenv(scaleVariable, QByteArray::number(scale * (own > 0 ? own : 1)));
}

TextScale::~TextScale() {
    if (m_former && m_former->isEmpty())
        qunsetenv(scaleVariable);
    else if (m_former)
        qputenv(scaleVariable, *m_former);
}

void TextScale::remember(double portalScale) {
    const QByteArray number = QByteArray::number(portalScale);
    QFile former(rememberedScale());
    if (!isScale(portalScale) || (former.open(QIODevice::ReadOnly) && former.readAll() == number))
        return;
    QSaveFile file(rememberedScale());
    if (file.open(QIODevice::WriteOnly) && file.write(number) == number.size())
        file.commit();
}

}  // namespace tralio
