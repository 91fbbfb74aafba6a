#pragma once

#include <QString>

#include <functional>

namespace tralio {

/// The desktop's keeper of secrets, as far as one secret goes: the user's key for the translation server.
/// Nothing here waits: answers come from the event loop, and may never come. Used from the main thread.
class SecretKeeper {
public:
    enum class Answer {
        done,
        absent,       ///< it keeps no such secret
        locked,       ///< the user has to unlock it first
        unavailable,  ///< there is none, or it does not work
    };

    SecretKeeper() = default;
    SecretKeeper(const SecretKeeper&) = delete;
    SecretKeeper& operator=(const SecretKeeper&) = delete;
    virtual ~SecretKeeper() = default;

    // None of these asks the user anything.

    virtual void find(std::function<void(Answer answer, const QString& secret)> then) = 0;
    /// In place of what it keeps.
    virtual void keep(const QString& secret, std::function<void(Answer)> then) = 0;
    /// Also when it keeps none.
    virtual void forget(std::function<void(Answer)> then) = 0;

    /// Has the desktop ask the user to unlock it.
    virtual void unlock() = 0;

    /// Told when asking again may bring another answer.
    std::function<void()> onChange;
};

}  // namespace tralio
