#include "desktop/sway_desktop.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <linux/input-event-codes.h>
#include <stdexcept>

#include "support/files.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

constexpr QSize screen(1280, 1024);

constexpr QStringView configuration =
    uR"(
xwayland %1
output * mode 1280x1024
%3
bindsym Mod4+Shift+d exec gdbus call --session --dest org.tralio.Tralio --object-path /org/tralio/Tralio --method org.tralio.Tralio.TranslateSelection
bindsym Mod4+Shift+s exec gdbus call --session --dest org.tralio.Tralio --object-path /org/tralio/Tralio --method org.tralio.Tralio.CaptureScreen
exec echo $WAYLAND_DISPLAY $SWAYSOCK $DISPLAY > %2.new && mv %2.new %2
)";

/// Of a window or a screen.
QRect areaOf(const QJsonObject& node) {
    const QJsonObject area = node.value(QLatin1String("rect")).toObject();
    return {area.value(QLatin1String("x")).toInt(), area.value(QLatin1String("y")).toInt(),
        area.value(QLatin1String("width")).toInt(), area.value(QLatin1String("height")).toInt()};
}

}  // namespace

SwayDesktop::SwayDesktop(Xwayland xwayland, const SessionSettings& settings) {
    startBus();
    startCompositor(xwayland, settings);
    m_connection = WaylandConnection::open();
    m_keyboard = m_connection ? VirtualKeyboard::open(*m_connection) : nullptr;
    if (!m_keyboard)
        throw std::runtime_error("the compositor gives no virtual keyboard");
    m_pointer = std::make_unique<VirtualPointer>(*m_connection, screen);
}

void SwayDesktop::startCompositor(Xwayland xwayland, const SessionSettings& settings) {
    setVariable(u"WLR_HEADLESS_OUTPUTS"_s, QString::number(settings.outputs));
    setVariable(u"WLR_BACKENDS"_s, u"headless"_s);
    setVariable(u"WLR_RENDERER"_s, u"pixman"_s);
    setVariable(u"WLR_LIBINPUT_NO_DEVICES"_s, u"1"_s);
    setVariable(u"XDG_CURRENT_DESKTOP"_s, u"sway"_s);
    const QString told = home() + u"/sway.told"_s;
    const bool withX = xwayland == Xwayland::present;
    const QString path = write(u"sway.conf"_s,
        configuration.toString().arg(withX ? u"enable"_s : u"disable"_s, told, settings.forSway()));
    start(u"sway"_s, {u"-c"_s, path});
    if (!waitUntil([&] { return QFile::exists(told); }))
        throw std::runtime_error("sway does not start");
    const QStringList words = QString::fromUtf8(contentOf(told)).trimmed().split(u' ');
    setVariable(u"WAYLAND_DISPLAY"_s, words.value(0));
    setVariable(u"SWAYSOCK"_s, words.value(1));
    if (withX)
        setVariable(u"DISPLAY"_s, words.value(2));
    // For our own connection.
    qputenv("WAYLAND_DISPLAY", words.value(0).toUtf8());
    qputenv("XDG_RUNTIME_DIR", environment().value(u"XDG_RUNTIME_DIR"_s).toUtf8());
}

void SwayDesktop::pressTextHotKey() const {
    press({KEY_LEFTMETA, KEY_LEFTSHIFT, KEY_D});
}

void SwayDesktop::pressCaptureHotKey() const {
    press({KEY_LEFTMETA, KEY_LEFTSHIFT, KEY_S});
}

void SwayDesktop::press(const std::vector<quint32>& keys) const {
    for (const quint32 key : keys)
        m_keyboard->setKey(key, true);
    for (auto key = keys.rbegin(); key != keys.rend(); ++key)
        m_keyboard->setKey(*key, false);
}

void SwayDesktop::click(const QPoint& place) {
    m_pointer->move(place);
    m_pointer->setButton(true);
    m_pointer->setButton(false);
}

void SwayDesktop::drag(const QPoint& from, const QPoint& to) {
    m_pointer->move(from);
    m_pointer->setButton(true);
    m_pointer->move((from + to) / 2);
    m_pointer->move(to);
    m_pointer->setButton(false);
}

QJsonObject SwayDesktop::windowWith(const char* key, const QJsonValue& value) const {
    const auto tree = QJsonDocument::fromJson(run(u"swaymsg"_s, {u"-t"_s, u"get_tree"_s}).toUtf8());
    QList<QJsonObject> waiting{tree.object()};
    while (!waiting.isEmpty()) {
        const QJsonObject node = waiting.takeFirst();
        if (node.contains(QLatin1String("pid")) && node.value(QLatin1String(key)) == value)
            return node;
        for (const char* children : {"nodes", "floating_nodes"})
            for (const auto& child : node.value(QLatin1String(children)).toArray())
                waiting += child.toObject();
    }
    return {};
}

bool SwayDesktop::bringToFront(const QString& applicationId) const {
    return waitUntil([&] {
        const QJsonObject window = windowWith("app_id", applicationId);
        if (!window.isEmpty() && !window.value(QLatin1String("focused")).toBool())
            run(u"swaymsg"_s, {u"[app_id=\"%1\"] focus"_s.arg(applicationId)});
        return window.value(QLatin1String("focused")).toBool();
    });
}

QRect SwayDesktop::windowArea(const QString& title) const {
    return areaOf(windowWith("name", title));
}

QRect SwayDesktop::outputArea(const QString& name) const {
    const auto outputs = QJsonDocument::fromJson(run(u"swaymsg"_s, {u"-t"_s, u"get_outputs"_s}).toUtf8());
    for (const auto& output : outputs.array())
        if (output.toObject().value(QLatin1String("name")).toString() == name)
            return areaOf(output.toObject());
    return {};
}

bool SwayDesktop::isOnXwayland(const QString& title) const {
    return windowWith("name", title).value(QLatin1String("shell")) == u"xwayland"_s;
}

QString SwayDesktop::focusedWindow() const {
    return windowWith("focused", true).value(QLatin1String("name")).toString();
}

bool SwayDesktop::isRunning(const QString& program) const {
    const QByteArray ours = "HOME=" + home().toUtf8();
    for (const QString& process : run(u"pgrep"_s, {u"-x"_s, program}).split(u'\n', Qt::SkipEmptyParts))
        if (contentOf(u"/proc/%1/environ"_s.arg(process)).split('\0').contains(ours))
            return true;
    return false;
}

}  // namespace tralio
