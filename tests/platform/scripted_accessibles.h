#pragma once

#include <QDBusVirtualObject>
#include <QHash>
#include <QMutex>
#include <QThread>

#include <optional>
#include <utility>

#include "platform/linux/atspi/atspi_element.h"

namespace tralio {

/// Accessible objects written down as data, which answer on a bus from a thread of their own, as another
/// program would. They are also the list of applications of that bus.
class ScriptedAccessibles final : public QDBusVirtualObject {
public:
    struct Object {
        AtspiRole role = AtspiRole::panel;
        QList<AtspiState> states{};
        QString name{};
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
    ScriptedAccessibles(const QString& address, QHash<QString, Object> objects);
    ~ScriptedAccessibles() override;

    [[nodiscard]] AtspiReference at(const QString& path) const;
    [[nodiscard]] int pressesOf(const QString& path) const;

    [[nodiscard]] QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    [[nodiscard]] std::optional<QVariantList> answer(
        Object& object, const QString& method, const QVariantList& arguments) const;

    mutable QMutex m_lock;
    QHash<QString, Object> m_objects;
    QString m_service;
    QThread m_thread;
};

}  // namespace tralio
