#pragma once

#include <QDBusConnection>
#include <QDBusPendingCall>
#include <QHash>
#include <QObject>
#include <QVariantMap>

#include <chrono>
#include <functional>
#include <optional>

namespace tralio {

class Clock;

/// How a request to the portal ended.
enum class PortalOutcome {
    granted,
    cancelled,  ///< by the user
    failed,     ///< by the desktop, with or without a reason
    silent,     ///< there was no answer within the time limit
};

struct PortalAnswer {
    PortalOutcome outcome = PortalOutcome::failed;
    QVariantMap results;
    QString error;  ///< error of the call itself, for the log

    /// The outcome as a text for the log.
    [[nodiscard]] QString words() const;
};

/// The desktop portal (org.freedesktop.portal.Desktop), on a bus connection of its own: the portal takes the
/// application id of a connection from its first call, which therefore must be the registration.
class Portal final : public QObject {
    Q_OBJECT

public:
    using Done = std::function<void(const PortalAnswer&)>;

    static constexpr auto service = "org.freedesktop.portal.Desktop";
    static constexpr auto path = "/org/freedesktop/portal/desktop";

    /// A connection to the session bus for use by the portal only.
    [[nodiscard]] static QDBusConnection ownConnection();

    /// `interfaces` are those whose versions are asked for. Registers with the portal and asks at once, and
    /// again whenever the portal has been started anew.
    Portal(QDBusConnection bus, QStringList interfaces, Clock& clock);

    [[nodiscard]] QDBusConnection& bus() { return m_bus; }

    /// The version of one of the interfaces; zero if the portal does not have it, or has not answered yet.
    [[nodiscard]] uint version(const QString& interface) const { return m_versions.value(interface); }

    /// The same, but waits for a running portal's answer, up to a quarter of a second after the question.
    uint awaitVersion(const QString& interface);

    /// Calls a method that answers through a request object. `done` is called once, later, and not after
    /// `context` is destroyed. A limit of zero means none: the user may be reading a dialog. If the portal
    /// goes away, its requests end as failed.
    void request(const QString& interface, const QString& method, const QVariantList& arguments,
        QVariantMap options, std::chrono::milliseconds limit, QObject* context, Done done);

Q_SIGNALS:
    /// The versions are known, or it is known that there is no portal. Emitted after the start and after
    /// every change of the portal.
    void ready();
    void gone();
    /// A desktop-specific backend of the portal has ended, and with it the state that it kept for us. The
    /// portal itself does not report this.
    void backendGone();

private:
    struct Question {
        QDBusPendingCall call;
        int limit;  ///< milliseconds
    };

    void introduce();
    void forgetPortal();
    void askVersion(const QString& interface, int limit);
    void takeVersion(const QString& interface, const QDBusPendingCall& call);
    [[nodiscard]] QString nextToken();

    QDBusConnection m_bus;
    QStringList m_interfaces;
    Clock& m_clock;
    QHash<QString, uint> m_versions;
    QHash<QString, Question> m_asked;  ///< open questions for versions
    /// Counts the portals we introduced ourselves to, so that a late answer from an earlier one is
    /// recognised.
    int m_introduction = 0;
    bool m_knowsUs = false;
    uint m_lastToken = 0;
};

}  // namespace tralio
