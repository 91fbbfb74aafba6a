#pragma once

#include <QString>

#include <functional>

namespace tralio {

/// The desktop's keyring, reduced to one secret: the user's key for the translation server. No operation
/// blocks: answers come from the event loop, and may never come. Used from the main thread.
class SecretKeeper {
public:
    enum class Answer {
        done,
        absent,       ///< the keyring does not have the secret
        locked,       ///< the user has to unlock the keyring first
        unavailable,  ///< there is no keyring, or it does not work
    };

    SecretKeeper() = default;
    SecretKeeper(const SecretKeeper&) = delete;
    SecretKeeper& operator=(const SecretKeeper&) = delete;
    virtual ~SecretKeeper() = default;

    /// Whether the desktop may ask the user to confirm, which it may only when the user has just changed the
    /// key.
    enum class Prompting { may, mustNot };

    /// Makes the desktop ask the user nothing.
    virtual void find(std::function<void(Answer answer, const QString& secret)> then) = 0;
    /// Stores the secret in place of an earlier one.
    virtual void keep(const QString& secret, Prompting prompting, std::function<void(Answer)> then) = 0;
    /// Succeeds also if there is no secret.
    virtual void forget(Prompting prompting, std::function<void(Answer)> then) = 0;

    /// Makes the desktop ask the user to unlock the keyring.
    virtual void unlock() = 0;

    /// Called when asking again may give another answer.
    std::function<void()> onChange;
};

}  // namespace tralio
