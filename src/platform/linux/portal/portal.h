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
    silent,     ///< no answer within the time limit
};

struct PortalAnswer {
    PortalOutcome outcome = PortalOutcome::failed;
    QVariantMap results;
    QString error;  ///< of the call itself, for the log

    /// How it ended, for the log.
    [[nodiscard]] QString words() const;
};

/// The desktop portal (org.freedesktop.portal.Desktop), on a bus connection of its own: the portal learns
/// which application a connection belongs to from its first call, which must be the one that says so.
class Portal final : public QObject {
    Q_OBJECT

public:
    using Done = std::function<void(const PortalAnswer&)>;

    static constexpr auto service = "org.freedesktop.portal.Desktop";
    static constexpr auto path = "/org/freedesktop/portal/desktop";

    /// A connection to the session bus for the portal alone.
    [[nodiscard]] static QDBusConnection ownConnection();

    /// `interfaces` are those whose versions will be asked for. Introduces itself and asks at once, and again
    /// whenever the portal has started anew.
    Portal(QDBusConnection bus, QStringList interfaces, Clock& clock);

    [[nodiscard]] QDBusConnection& bus() { return m_bus; }

    /// The version of one of the interfaces, as far as known; zero where the portal has it not, or has not
    /// said yet.
    [[nodiscard]] uint version(const QString& interface) const { return m_versions.value(interface); }

    /// The same, but gives a portal that runs the time to say: a quarter of a second from when it was asked.
    uint awaitVersion(const QString& interface);

    /// Calls a method that answers by a request object. `done` is called once, later, and not after `context`
    /// is gone. A time limit of zero is none: the user may be reading a dialog. A portal that goes takes what
    /// it was asked with it: that has failed.
    void request(const QString& interface, const QString& method, const QVariantList& arguments,
        QVariantMap options, std::chrono::milliseconds limit, QObject* context, Done done);

Q_SIGNALS:
    /// What the portal has is known, or that there is none: at start, and whenever it may have changed.
    void ready();
    void gone();
    /// One of the desktop's programs behind the portal has ended, and with it what it kept for us, of which
    /// the portal itself says nothing.
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
    QHash<QString, Question> m_asked;  ///< for versions, until answered
    /// Counts the portals we introduced ourselves to, so that a late answer from an earlier one is
    /// recognised.
    int m_introduction = 0;
    bool m_knowsUs = false;
    uint m_lastToken = 0;
};

}  // namespace tralio
