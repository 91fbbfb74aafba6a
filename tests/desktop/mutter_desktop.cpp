#include "desktop/mutter_desktop.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusReply>
#include <QFile>

#include <stdexcept>

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

const QString socket = u"wayland-tralio"_s;
const QString service = u"org.gnome.Mutter.RemoteDesktop"_s;

}  // namespace

MutterDesktop::MutterDesktop() {
    setVariable(u"XDG_CURRENT_DESKTOP"_s, u"GNOME"_s);
    startBus();
    startCompositor();
    setVariable(u"WAYLAND_DISPLAY"_s, socket);
    startRemoteInput();
}

void MutterDesktop::startCompositor() {
    start(u"mutter"_s,
        {u"--headless"_s, u"--wayland"_s, u"--no-x11"_s, u"--virtual-monitor"_s, u"1280x1024"_s,
            u"--wayland-display"_s, socket});
    const QString path = environment().value(u"XDG_RUNTIME_DIR"_s) + u'/' + socket;
    if (!waitUntil([&] { return QFile::exists(path); }))
        throw std::runtime_error("mutter does not start");
}

void MutterDesktop::startRemoteInput() {
    const bool started = waitUntil([this] {
        const QDBusReply<QDBusObjectPath> session =
            QDBusConnection::sessionBus().call(QDBusMessage::createMethodCall(
                service, u"/org/gnome/Mutter/RemoteDesktop"_s, service, u"CreateSession"_s));
        m_remote = session.value().path();
        return session.isValid();
    });
    if (!started)
        throw std::runtime_error("mutter takes no remote input");
    input(u"Start"_s, {});
}

void MutterDesktop::input(const QString& method, const QVariantList& arguments) const {
    auto call = QDBusMessage::createMethodCall(service, m_remote, service + u".Session"_s, method);
    call.setArguments(arguments);
    const QDBusMessage reply = QDBusConnection::sessionBus().call(call);
    if (reply.type() == QDBusMessage::ErrorMessage)
        throw std::runtime_error(reply.errorMessage().toStdString());
}

void MutterDesktop::pressTextHotKey() const {
    callOnBus(u"org.tralio.Tralio"_s, u"/org/tralio/Tralio"_s, u"org.tralio.Tralio.TranslateSelection"_s);
}

void MutterDesktop::press(const std::vector<quint32>& keys) const {
    for (const quint32 key : keys)
        input(u"NotifyKeyboardKeycode"_s, {key, true});
    for (auto key = keys.rbegin(); key != keys.rend(); ++key)
        input(u"NotifyKeyboardKeycode"_s, {*key, false});
}

}  // namespace tralio
