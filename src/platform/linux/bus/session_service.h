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
/// It is how there is one instance in a session, how a compositor without global shortcuts for programs binds
/// its keys to ours, and how other programs hand over a text. The same actions answer to the standard
/// interface org.freedesktop.Application. Whoever calls gets the reply at once; the action runs in the next
/// turn of the event loop.
class SessionService final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.tralio.Tralio")

public:
    /// What the calls do. A call whose action is empty does nothing.
    struct Actions {
        std::function<void()> open;
        std::function<void()> translateSelection;
        std::function<void()> captureScreen;
        std::function<void(const QString&)> translateText;
    };

    enum class Claim {
        claimed,         ///< this is the session's instance, and calls arrive from now on
        takenByAnother,  ///< an instance runs already
        noSessionBus,    ///< nobody can tell
    };

    static constexpr auto name = "org.tralio.Tralio";
    static constexpr auto path = "/org/tralio/Tralio";

    using Connect = std::function<QDBusConnection()>;

    /// `reconnect` makes a new connection when the bus has ended: a new one may come in its place.
    explicit SessionService(
        QDBusConnection bus = QDBusConnection::sessionBus(), Connect reconnect = &anotherConnection);
    ~SessionService() override;

    void setActions(Actions actions) { m_actions = std::move(actions); }

    /// Becomes the session's instance, if there is none.
    [[nodiscard]] Claim claim();

    /// Has the instance that runs already open its window, with the activation token that this process was
    /// started with. Waits two seconds at the most; false when it does not answer.
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

    /// Runs an action later. The token lets the window come to the front; it is empty where none was given.
    void run(std::function<void()> action, const QString& activationToken = {});
    void translateText(const QString& text, const QString& activationToken);
    void runNamed(const QString& action, const QVariantList& parameter, const QString& activationToken);

    QDBusConnection m_bus;
    Connect m_reconnect;
    QTimer m_return;
    Actions m_actions;
};

}  // namespace tralio
