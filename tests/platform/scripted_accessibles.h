#pragma once

#include <QDBusMetaType>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QHash>
#include <QMutex>
#include <QThread>

#include <optional>
#include <stdexcept>
#include <utility>

#include "platform/linux/atspi/atspi_element.h"
#include "support/testing.h"

namespace tralio {

/// Accessible objects written down as data, which answer on a bus from a thread of their own, as another
/// program would. They are also the list of applications of that bus.
class ScriptedAccessibles final : public QDBusVirtualObject {
public:
    struct Object {
        AtspiRole role = AtspiRole::panel;
        QList<AtspiState> states{};
        QStringList children{};  ///< paths
        QString parent{};
        /// Absent where the object knows of no text.
        std::optional<QList<std::pair<int, int>>> selections{};
        QString text{};
        bool keepsItsText = false;  ///< answers no question for it
        QString keyBinding{};
        QString toolkit{};
        int presses = 0;
    };

    /// The list of applications holds the one at `/application`.
    ScriptedAccessibles(const QString& address, QHash<QString, Object> objects)
        : m_objects(std::move(objects)) {
        m_objects[AtspiBus::desktop().path.path()].children = {u"/application"_s};
        qDBusRegisterMetaType<AtspiReference>();
        qDBusRegisterMetaType<QList<AtspiReference>>();
        qDBusRegisterMetaType<QList<uint>>();
        auto bus = QDBusConnection::connectToBus(address, m_name);
        m_service = bus.baseService();
        if (!bus.registerVirtualObject(u"/"_s, this, QDBusConnection::SubPath) ||
            !bus.registerService(u"org.a11y.atspi.Registry"_s))
            throw std::runtime_error("the bus takes no accessible objects");
        // Not before: the registration gives the object children, which only its own thread can make.
        moveToThread(&m_thread);
        m_thread.start();
    }
    ~ScriptedAccessibles() override {
        QDBusConnection::disconnectFromBus(m_name);
        m_thread.quit();
        m_thread.wait();
    }

    [[nodiscard]] AtspiReference at(const QString& path) const { return {m_service, QDBusObjectPath(path)}; }
    [[nodiscard]] int pressesOf(const QString& path) const {
        const QMutexLocker locker(&m_lock);
        return m_objects.value(path).presses;
    }

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        const QMutexLocker locker(&m_lock);
        const auto object = m_objects.find(message.path());
        const auto values =
            object == m_objects.end() ? std::nullopt : answer(*object, message.member(), message.arguments());
        return connection.send(values ? message.createReply(*values)
                                      : message.createErrorReply(QDBusError::UnknownMethod, u"not known"_s));
    }

private:
    [[nodiscard]] std::optional<QVariantList> answer(
        Object& object, const QString& method, const QVariantList& arguments) const {
        const auto number = [&arguments](int which) { return arguments.value(which).toInt(); };
        const auto variant = [](const QVariant& value) {
            return QVariantList{QVariant::fromValue(QDBusVariant(value))};
        };
        if (method == u"Get" && arguments.value(1) == u"Name"_s)
            return variant(QString());
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
            const auto range = object.selections->value(number(0));
            return QVariantList{range.first, range.second};
        }
        if (method == u"GetText" && !object.keepsItsText)
            return QVariantList{object.text.mid(number(0), number(1) - number(0))};
        if (method == u"GetKeyBinding" && !object.keyBinding.isNull())
            return QVariantList{object.keyBinding};
        if (method != u"DoAction")
            return std::nullopt;
        ++object.presses;
        return QVariantList{true};
    }

    const QString m_name = u"scripted-accessibles"_s;
    mutable QMutex m_lock;
    QHash<QString, Object> m_objects;
    QString m_service;
    QThread m_thread;
};

}  // namespace tralio
