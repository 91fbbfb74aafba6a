#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QObject>

#include "state/secret_keeper.h"

namespace tralio {

/// The desktop's keyring (org.freedesktop.secrets, provided by GNOME, KDE and KeePassXC). The secret is
/// stored in the default collection under an attribute of ours. It crosses the session bus unencrypted: only
/// the user's own programs are there.
class SecretService final : public QObject, public SecretKeeper {
    Q_OBJECT

public:
    static constexpr auto service = "org.freedesktop.secrets";
    static constexpr auto path = "/org/freedesktop/secrets";

    explicit SecretService(QDBusConnection bus = QDBusConnection::sessionBus());

    /// May start the service, since the secret is expected to be there.
    void find(std::function<void(Answer answer, const QString& secret)> then) override;
    /// Does not start the service.
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
        QDBusObjectPath path;  ///< empty if there is none
        bool isLocked = true;
    };

    /// Calls a method. `take` gets the reply; `fail` is called if there is none.
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
