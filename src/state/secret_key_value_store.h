#pragma once

#include <QString>

#include <functional>
#include <optional>

#include "common/clock.h"
#include "state/key_value_store.h"
#include "state/secret_keeper.h"

namespace tralio {

/// The user's values. The key for the translation server is kept in the desktop's keyring if there is one and
/// it is unlocked: the underlying store then has a marker in its place (the boolean true). Without a keyring,
/// and while it is locked, the store has the key itself. The built-in key is no secret and stays in the
/// store.
///
/// Nothing blocks on the keyring. A key that has not come from it yet reads as empty. If the user removes the
/// key while the keyring is locked, that is remembered, and the key is deleted once it is unlocked, but not
/// before undoing is over.
class SecretKeyValueStore final : public KeyValueStore {
public:
    /// All outlive this object.
    SecretKeyValueStore(KeyValueStore& store, SecretKeeper& keeper, Clock& clock);
    ~SecretKeyValueStore() override;

    [[nodiscard]] std::optional<StoredValue> value(const QString& key) const override;
    void setValue(const QString& key, StoredValue value) override;
    [[nodiscard]] Reading read(const QString& key) override;
    void preserve(const QString& key) override { m_store.preserve(key); }
    void forgetOverwritten() override { m_store.forgetOverwritten(); }
    [[nodiscard]] bool isAwaited(const QString& key) const override;
    void awaitAgain(const QString& key) override;

    /// Whether there is a key that has not come from the keyring yet.
    [[nodiscard]] bool isKeyAwaited() const { return m_isAwaited; }
    /// Called at every change of `isKeyAwaited`.
    std::function<void(bool)> onKeyAwaited;

private:
    using Prompting = SecretKeeper::Prompting;

    [[nodiscard]] bool isSecret() const;
    [[nodiscard]] bool holdsMarker() const;
    void setAwaited(bool awaited);
    void askKeeper();
    void find();
    void handOver(Prompting prompting);
    void writeInsteadOfMarker();
    void forget(Prompting prompting);
    void endRegret();
    void setToForget(bool toForget);

    KeyValueStore& m_store;
    SecretKeeper& m_keeper;
    Clock& m_clock;
    std::optional<QString> m_key;  ///< shared by all settings objects
    bool m_isAwaited = false;
    std::optional<QString> m_handedOver;  ///< sent to the keyring and not confirmed yet
    ScheduledCall m_patience;             ///< for the confirmation
    ScheduledCall m_regret;               ///< while it is set, nothing changes in the keyring
};

}  // namespace tralio
