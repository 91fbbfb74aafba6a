#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QObject>

#include "state/secret_keeper.h"

namespace tralio {

/// The keeper of secrets of the desktop (org.freedesktop.secrets, of GNOME, KDE and KeePassXC). The secret
/// lies in its default collection under an attribute of ours. It crosses the session bus unencrypted, as the
/// user's own programs are alone there.
class SecretService final : public QObject, public SecretKeeper {
    Q_OBJECT

public:
    static constexpr auto service = "org.freedesktop.secrets";
    static constexpr auto path = "/org/freedesktop/secrets";

    explicit SecretService(QDBusConnection bus = QDBusConnection::sessionBus());

    /// May start the service, which keeps what is looked for.
    void find(std::function<void(Answer answer, const QString& secret)> then) override;
    /// Starts no service for its sake.
    void keep(const QString& secret, std::function<void(Answer)> then) override;
    void forget(std::function<void(Answer)> then) override;
    void unlock() override;

private Q_SLOTS:
    void collectionsChanged();
    void propertiesChanged(const QDBusMessage& signal);

private:
    using Take = std::function<void(const QDBusMessage& reply)>;
    enum class Start { may, mustNot };

    struct DefaultCollection {
        QDBusObjectPath path;  ///< empty when there is none
        bool isLocked = true;
    };

    /// Calls a method; `take` gets the reply, and `fail` is called where there is none.
    void call(const QString& object, const QString& interface, const QString& method,
        const QVariantList& arguments, Start start, Take take, std::function<void()> fail);
    void callService(const QString& method, const QVariantList& arguments, Start start, Take take,
        std::function<void()> fail);
    void findCollection(Start start, const std::function<void(const DefaultCollection&)>& then,
        const std::function<void()>& fail);
    void deleteItems(QList<QDBusObjectPath> items, const std::function<void(Answer)>& then);
    void unlock(const QList<QDBusObjectPath>& objects);
    void openSession(
        Start start, std::function<void(const QDBusObjectPath& session)> then, std::function<void()> fail);
    void createItem(const QString& secret, const QDBusObjectPath& session, const QDBusObjectPath& collection,
        const std::function<void(Answer)>& then);

    QDBusConnection m_bus;
};

}  // namespace tralio
