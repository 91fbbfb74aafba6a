#include "desktop/sway_desktop.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>

#include <linux/input-event-codes.h>
#include <stdexcept>
#include <wayland-client-protocol.h>

#include "platform/linux/wayland/virtual_keyboard.h"
#include "platform/linux/wayland/wayland_proxy.h"
#include "support/files.h"

namespace tralio {
namespace {

constexpr QSize screen(1280, 1024);

constexpr QStringView configuration =
    uR"(
xwayland %1
output * mode 1280x1024
bindsym Mod4+Shift+d exec gdbus call --session --dest org.tralio.Tralio --object-path /org/tralio/Tralio --method org.tralio.Tralio.TranslateSelection
bindsym Mod4+Shift+s exec gdbus call --session --dest org.tralio.Tralio --object-path /org/tralio/Tralio --method org.tralio.Tralio.CaptureScreen
exec echo $WAYLAND_DISPLAY $SWAYSOCK $DISPLAY > %2.new && mv %2.new %2
)";
const QString ofTests =
    uR"(
focus_follows_mouse no
default_border none
output * background #D5DBE3 solid_color
)"_s;

// The part of the protocol that is used, as libwayland's tables describe it.
extern const wl_interface pointerInterface;
const wl_interface* noTypes[5] = {};
const wl_interface* createTypes[] = {&wl_seat_interface, &pointerInterface};

const wl_message pointerRequests[] = {{"motion", "uff", noTypes}, {"motion_absolute", "uuuuu", noTypes},
    {"button", "uuu", noTypes}, {"axis", "uuf", noTypes}, {"frame", "", noTypes}};
constexpr quint32 motionAbsolute = 1;
constexpr quint32 button = 2;
constexpr quint32 frameRequest = 4;

const wl_interface pointerInterface{"zwlr_virtual_pointer_v1", 1, 5, pointerRequests, 0, nullptr};

const wl_message managerRequests[] = {{"create_virtual_pointer", "?on", createTypes}};
const wl_interface managerInterface{"zwlr_virtual_pointer_manager_v1", 1, 1, managerRequests, 0, nullptr};

}  // namespace

/// A virtual pointer, by the wlr-virtual-pointer protocol, for a screen of this size.
class SwayDesktop::Pointer final {
public:
    explicit Pointer(WaylandConnection& connection) : m_connection(connection) {
        const auto seat = connection.bind(wl_seat_interface, 1);
        const auto manager = connection.bind(managerInterface, 1);
        if (!seat || !manager)
            throw std::runtime_error("the compositor gives no virtual pointer");
        constexpr void* newObject = nullptr;
        m_object = makeObject(manager.get(), 0, pointerInterface, seat.get(), newObject);
        m_time.start();
    }

    void move(const QPoint& place) {
        send(motionAbsolute, static_cast<quint32>(place.x()), static_cast<quint32>(place.y()),
            static_cast<quint32>(screen.width()), static_cast<quint32>(screen.height()));
    }
    void setButton(bool down) { send(button, quint32{BTN_LEFT}, quint32{down}); }

private:
    template <typename... Arguments>
    void send(quint32 request, Arguments... arguments) {
        sendRequest(m_object.get(), request, static_cast<quint32>(m_time.elapsed()), arguments...);
        sendRequest(m_object.get(), frameRequest);
        m_connection.sync(QDeadlineTimer(1000));
    }

    WaylandConnection& m_connection;
    WaylandObject m_object;
    QElapsedTimer m_time;
};

SwayDesktop::~SwayDesktop() = default;

SwayDesktop::SwayDesktop(Xwayland xwayland, const SessionSettings& settings) {
    startBus();
    startCompositor(xwayland, settings);
    m_connection = WaylandConnection::open();
    m_keyboard = m_connection ? VirtualKeyboard::open(*m_connection) : nullptr;
    if (!m_keyboard)
        throw std::runtime_error("the compositor gives no virtual keyboard");
    m_pointer = std::make_unique<Pointer>(*m_connection);
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
        (settings.asShipped ? QString::fromUtf8(contentOf(u"/etc/sway/config"_s)) : QString(ofTests)) +
            configuration.toString().arg(withX ? u"enable"_s : u"disable"_s, told));
    start(u"sway"_s, {u"-c"_s, path});
    awaitStart(u"sway"_s, [&] { return QFile::exists(told); });
    const QStringList words = QString::fromUtf8(contentOf(told)).trimmed().split(u' ');
    setVariable(u"WAYLAND_DISPLAY"_s, words.value(0));
    setVariable(u"SWAYSOCK"_s, words.value(1));
    if (withX)
        setVariable(u"DISPLAY"_s, words.value(2));
    // For this process's own connection.
    qputenv("WAYLAND_DISPLAY", words.value(0).toUtf8());
    qputenv("XDG_RUNTIME_DIR", environment().value(u"XDG_RUNTIME_DIR"_s).toUtf8());
}

void SwayDesktop::press(const std::vector<quint32>& keys) const {
    for (const quint32 key : keys)
        m_keyboard->setKey(key, true);
    for (auto key = keys.rbegin(); key != keys.rend(); ++key)
        m_keyboard->setKey(*key, false);
}

void SwayDesktop::movePointer(const QPoint& place) {
    m_pointer->move(place);
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
        if (!window.isEmpty() && !window[u"focused"_s].toBool())
            run(u"swaymsg"_s, {u"[app_id=\"%1\"] focus"_s.arg(applicationId)});
        return window[u"focused"_s].toBool();
    });
}

QRect SwayDesktop::areaOf(const QJsonObject& node) {
    const QJsonValue area = node[u"rect"_s];
    return {area[u"x"_s].toInt(), area[u"y"_s].toInt(), area[u"width"_s].toInt(), area[u"height"_s].toInt()};
}

QRect SwayDesktop::outputArea(const QString& name) const {
    const auto outputs = QJsonDocument::fromJson(run(u"swaymsg"_s, {u"-t"_s, u"get_outputs"_s}).toUtf8());
    for (const auto& output : outputs.array())
        if (output[u"name"_s].toString() == name)
            return areaOf(output.toObject());
    return {};
}

bool SwayDesktop::isRunning(const QString& program) const {
    const QByteArray ours = "HOME=" + home().toUtf8();
    for (const QString& process : run(u"pgrep"_s, {u"-x"_s, program}).split(u'\n', Qt::SkipEmptyParts))
        if (contentOf(u"/proc/%1/environ"_s.arg(process)).split('\0').contains(ours))
            return true;
    return false;
}

}  // namespace tralio
