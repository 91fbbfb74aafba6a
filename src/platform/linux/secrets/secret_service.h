#pragma once

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QList>

#include "platform/linux/secrets/secret_service_calls.h"
#include "state/secret_keeper.h"

namespace tralio {

/// The desktop's keyring (org.freedesktop.secrets, provided by GNOME, KDE and KeePassXC). The secret is
/// stored in the default collection under an attribute of ours. It crosses the session bus unencrypted: only
/// the user's own programs are there.
class SecretService final : public SecretKeeper {
public:
    explicit SecretService(QDBusConnection bus = QDBusConnection::sessionBus());

    /// May start the service, since the secret is expected to be there.
    void find(std::function<void(Answer answer, const QString& secret)> then) override;
    /// Does not start the service.
    void keep(const QString& secret, Prompting prompting, std::function<void(Answer)> then) override;
    void forget(Prompting prompting, std::function<void(Answer)> then) override;
    void unlock() override;

private:
    using Start = SecretServiceCalls::Start;
    using Fail = SecretServiceCalls::Fail;

    struct DefaultCollection {
        QDBusObjectPath path;  ///< empty if there is none
        bool isLocked = true;
    };
    struct Items {
        QList<QDBusObjectPath> unlocked;
        QList<QDBusObjectPath> locked;
        DefaultCollection collection;  ///< whose locked items may be missing here
    };

    void findCollection(
        Start start, const std::function<void(const DefaultCollection&)>& then, const Fail& fail);
    void findItems(Start start, const std::function<void(const Items&)>& then, const Fail& fail);
    /// Unlocks a collection of KWallet whose wallet is open; `fail` is called if it is no such one.
    void unlockOpenWallet(
        const QDBusObjectPath& collection, const std::function<void()>& then, const Fail& fail);
    /// @param versions of KWallet, one of which may have the wallet
    void ifWalletIsOpen(const QString& wallet, QStringList versions, const std::function<void()>& then,
        const Fail& otherwise);
    void unlock(const QList<QDBusObjectPath>& objects, const std::function<void()>& then);
    void deleteItems(
        QList<QDBusObjectPath> items, Prompting prompting, const std::function<void(Answer)>& then);
    void openSession(Start start, std::function<void(const QDBusObjectPath& session)> then, const Fail& fail);
    void createItem(const QString& secret, const QDBusObjectPath& session, const QDBusObjectPath& collection,
        Prompting prompting, const std::function<void(Answer)>& then);

    SecretServiceCalls m_calls;
};

}  // namespace tralio
