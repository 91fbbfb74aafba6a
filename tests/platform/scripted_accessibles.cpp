#include "platform/scripted_accessibles.h"

#include <QDBusMetaType>
#include <QDBusVariant>

#include <stdexcept>

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

const QString connectionName = u"scripted-accessibles"_s;
const QString registry = u"org.a11y.atspi.Registry"_s;

}  // namespace

ScriptedAccessibles::ScriptedAccessibles(const QString& address, QHash<QString, Object> objects)
    : m_objects(std::move(objects)) {
    m_objects[AtspiBus::desktop().path.path()].children = {u"/application"_s};
    qDBusRegisterMetaType<AtspiReference>();
    qDBusRegisterMetaType<QList<AtspiReference>>();
    qDBusRegisterMetaType<QList<uint>>();
    auto bus = QDBusConnection::connectToBus(address, connectionName);
    m_service = bus.baseService();
    if (!bus.registerVirtualObject(u"/"_s, this, QDBusConnection::SubPath) || !bus.registerService(registry))
        throw std::runtime_error("the bus takes no accessible objects");
    // Not before: the registration gives the object children, and those can be made in its own thread only.
    moveToThread(&m_thread);
    m_thread.start();
}

ScriptedAccessibles::~ScriptedAccessibles() {
    QDBusConnection::disconnectFromBus(connectionName);
    m_thread.quit();
    m_thread.wait();
}

AtspiReference ScriptedAccessibles::at(const QString& path) const {
    return {m_service, QDBusObjectPath(path)};
}

int ScriptedAccessibles::pressesOf(const QString& path) const {
    const QMutexLocker locker(&m_lock);
    return m_objects.value(path).presses;
}

QString ScriptedAccessibles::introspect(const QString& /*path*/) const {
    return {};
}

bool ScriptedAccessibles::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
    const QMutexLocker locker(&m_lock);
    const auto object = m_objects.find(message.path());
    const auto values =
        object == m_objects.end() ? std::nullopt : answer(*object, message.member(), message.arguments());
    return connection.send(values ? message.createReply(*values)
                                  : message.createErrorReply(QDBusError::UnknownMethod, u"not known"_s));
}

std::optional<QVariantList> ScriptedAccessibles::answer(
    Object& object, const QString& method, const QVariantList& arguments) const {
    const auto variant = [](const QVariant& value) {
        return QVariantList{QVariant::fromValue(QDBusVariant(value))};
    };
    if (method == u"Get" && arguments.value(1) == u"Name"_s)
        return variant(object.name);
    if (method == u"Get" && arguments.value(1) == u"ToolkitName"_s)
        return variant(object.toolkit);
    if (method == u"Get" && arguments.value(1) == u"Parent"_s)
        return variant(QVariant::fromValue(at(object.parent)));
    if (method == u"GetRole")
        return QVariantList{static_cast<uint>(object.role)};
    if (method == u"GetState") {
        uint bits = 0;
        for (const AtspiState state : object.states)
            bits |= 1U << static_cast<uint>(state);
        return QVariantList{QVariant::fromValue(QList<uint>{bits, 0})};
    }
    if (method == u"GetChildren") {
        QList<AtspiReference> children;
        for (const QString& path : object.children)
            children += at(path);
        return QVariantList{QVariant::fromValue(children)};
    }
    if (method == u"GetNSelections" && object.selections)
        return QVariantList{static_cast<int>(object.selections->size())};
    if (method == u"GetSelection" && object.selections) {
        const auto range = object.selections->value(arguments.value(0).toInt());
        return QVariantList{range.first, range.second};
    }
    if (method == u"GetText" && !object.keepsItsText)
        return QVariantList{object.text.mid(
            arguments.value(0).toInt(), arguments.value(1).toInt() - arguments.value(0).toInt())};
    if (method == u"GetKeyBinding" && !object.keyBinding.isNull())
        return QVariantList{object.keyBinding};
    if (method == u"DoAction") {
        ++object.presses;
        return QVariantList{true};
    }
    return std::nullopt;
}

}  // namespace tralio
