#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QStringList>
#include <QTimer>
#include <QVariantMap>

#include <functional>

namespace tralio {

/// The program's object on the session bus: org.tralio.Tralio, at /org/tralio/Tralio.
///
/// It makes sure that a session has one instance. Compositors without global shortcuts for programs bind
/// their keys to its methods, and other programs hand over texts through it. The same actions are available
/// through the standard interface org.freedesktop.Application. Callers get the reply at once; the action runs
/// in the next turn of the event loop.
class SessionService final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.tralio.Tralio")

public:
    /// The actions behind the calls. A call whose action is empty does nothing.
    struct Actions {
        std::function<void()> open;
        std::function<void()> translateSelection;
        std::function<void()> captureScreen;
        std::function<void(const QString&)> translateText;
    };

    enum class Claim {
        claimed,         ///< this process is the instance, and calls arrive from now on
        takenByAnother,  ///< another instance runs
        noSessionBus,    ///< there is no bus, or it refuses the name
    };

    static constexpr auto name = "org.tralio.Tralio";
    static constexpr auto path = "/org/tralio/Tralio";

    using Connect = std::function<QDBusConnection()>;

    /// `reconnect` makes a new connection after the bus has ended, since another bus may replace it.
    explicit SessionService(
        QDBusConnection bus = QDBusConnection::sessionBus(), Connect reconnect = &anotherConnection);
    ~SessionService() override;

    void setActions(Actions actions) { m_actions = std::move(actions); }

    /// Makes this process the session's instance, if there is none.
    [[nodiscard]] Claim claim();

    /// Makes the running instance open its window, with the activation token that this process was started
    /// with. Waits up to two seconds; false if there is no answer.
    [[nodiscard]] bool openRunningInstance() const;

private Q_SLOTS:
    void busEnded();

public Q_SLOTS:
    void Open();
    void TranslateSelection();
    void CaptureScreen();
    void TranslateText(const QString& text);

private:
    friend class FreedesktopApplication;

    [[nodiscard]] static QDBusConnection anotherConnection();
    void watchBus();
    void returnToBus();

    /// Runs an action in the next turn of the event loop. The token lets its window come to the front; it may
    /// be empty.
    void run(std::function<void()> action, const QString& activationToken = {});
    void translateText(const QString& text, const QString& activationToken);
    void runNamed(const QString& action, const QVariantList& parameter, const QString& activationToken);

    QDBusConnection m_bus;
    Connect m_reconnect;
    QTimer m_return;
    Actions m_actions;
};

}  // namespace tralio
