#pragma once

#include <QString>

#include <functional>
#include <optional>

#include "state/key_value_store.h"

namespace tralio {

class SecretKeeper;

/// The user's values, of which the key for the translation server is kept by the desktop's keeper of secrets
/// where there is one that is open: the store then holds a marker in its place (the boolean true). Without a
/// keeper, and while it is locked, the store holds the key itself. The built-in key is no secret and stays in
/// the store.
///
/// Nothing waits for the keeper. A key that it has not told yet reads as empty. One that the user gives up
/// while it is locked is remembered as such, and goes when it opens.
class SecretKeyValueStore final : public KeyValueStore {
public:
    /// Both outlive this object.
    SecretKeyValueStore(KeyValueStore& store, SecretKeeper& keeper);
    ~SecretKeyValueStore() override;

    [[nodiscard]] std::optional<StoredValue> value(const QString& key) const override;
    void setValue(const QString& key, StoredValue value) override;
    void preserve(const QString& key) override { m_store.preserve(key); }
    void forgetOverwritten() override { m_store.forgetOverwritten(); }
    [[nodiscard]] bool isAwaited(const QString& key) const override;
    void awaitAgain(const QString& key) override;

    /// Whether there is a key that the keeper has not told.
    [[nodiscard]] bool isKeyAwaited() const { return m_isAwaited; }
    /// Told of every change of `isKeyAwaited`.
    std::function<void(bool)> onKeyAwaited;

private:
    [[nodiscard]] bool isSecret() const;
    [[nodiscard]] bool holdsMarker() const;
    void setAwaited(bool awaited);
    void askKeeper();
    void find();
    void handOver();
    void forget();
    void setToForget(bool toForget);

    KeyValueStore& m_store;
    SecretKeeper& m_keeper;
    std::optional<QString> m_key;  ///< one copy for all settings
    bool m_isAwaited = false;
    std::optional<QString> m_handedOver;  ///< until the keeper has confirmed it
};

}  // namespace tralio
