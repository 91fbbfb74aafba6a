#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QMap>
#include <QObject>

#include <functional>

namespace tralio {

/// Calls to the Secret Service, and the prompts that it returns. Nothing blocks.
class SecretServiceCalls final : public QObject {
    Q_OBJECT

public:
    static constexpr auto service = "org.freedesktop.secrets";
    static constexpr auto path = "/org/freedesktop/secrets";

    using Take = std::function<void(const QDBusMessage& reply)>;
    using Fail = std::function<void()>;
    /// Whether a call may start the service.
    enum class Start { may, mustNot };

    explicit SecretServiceCalls(QDBusConnection bus);

    /// Calls a method. `take` gets the reply; `fail` is called if there is none.
    void call(const QString& object, const QString& interface, const QString& method,
        const QVariantList& arguments, Start start, Take take, Fail fail);
    void callService(const QString& method, const QVariantList& arguments, Start start, Take take, Fail fail);

    /// Runs a prompt, which may ask the user. `take` gets the result; `fail` is called if the user declines,
    /// if there is no such prompt, and if the service ends.
    void run(
        const QDBusObjectPath& prompt, std::function<void(const QVariant& result)> take, const Fail& fail);

    /// Called when the service starts and when a collection is unlocked.
    std::function<void()> onChange;

private Q_SLOTS:
    void tellChange();
    void propertiesChanged(const QDBusMessage& signal);
    void promptCompleted(const QDBusMessage& signal);

private:
    struct Prompt {
        std::function<void(const QVariant& result)> take;
        Fail fail;
    };

    void failPrompts();

    QDBusConnection m_bus;
    QMap<QString, Prompt> m_prompts;  ///< that run, by their paths
};

}  // namespace tralio
