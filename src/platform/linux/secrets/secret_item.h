#pragma once

#include <QByteArray>
#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QMap>
#include <QString>

namespace tralio {

using SecretAttributes = QMap<QString, QString>;

/// A secret as it is sent over the bus: (oayays).
struct SecretValue {
    QDBusObjectPath session;
    QByteArray parameters;  ///< of the encryption; empty here
    QByteArray value;
    QString contentType;
};

inline QDBusArgument& operator<<(QDBusArgument& argument, const SecretValue& secret) {
    argument.beginStructure();
    argument << secret.session << secret.parameters << secret.value << secret.contentType;
    argument.endStructure();
    return argument;
}

inline const QDBusArgument& operator>>(const QDBusArgument& argument, SecretValue& secret) {
    argument.beginStructure();
    argument >> secret.session >> secret.parameters >> secret.value >> secret.contentType;
    argument.endStructure();
    return argument;
}

inline void registerSecretTypes() {
    qDBusRegisterMetaType<SecretAttributes>();
    qDBusRegisterMetaType<SecretValue>();
}

}  // namespace tralio

Q_DECLARE_METATYPE(tralio::SecretValue)
