#pragma once

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDeadlineTimer>
#include <QHash>
#include <QObject>

#include <optional>

namespace tralio {

class AccessibilitySwitch;

/// An accessible object: the bus name of its application on the accessibility bus, and its path there.
struct AtspiReference {
    QString service;
    QDBusObjectPath path;

    [[nodiscard]] bool isNull() const {
        return service.isEmpty() || path.path().isEmpty() ||
            path.path() == QLatin1String("/org/a11y/atspi/null");
    }
    bool operator==(const AtspiReference&) const = default;
};

QDBusArgument& operator<<(QDBusArgument& argument, const AtspiReference& reference);
const QDBusArgument& operator>>(const QDBusArgument& argument, AtspiReference& reference);

/// The time that a series of calls to one application may take in total.
class TimeBudget {
public:
    explicit TimeBudget(qint64 milliseconds) : m_deadline(milliseconds, Qt::PreciseTimer) {}

    [[nodiscard]] int left() const { return static_cast<int>(m_deadline.remainingTime()); }
    [[nodiscard]] bool isSpent() const { return m_deadline.hasExpired(); }
    [[nodiscard]] QDeadlineTimer deadline() const { return m_deadline; }

private:
    QDeadlineTimer m_deadline;
};

/// A direct client of the accessibility bus.
///
/// WORKAROUND: libatspi 2.46, the usual library for it, makes blocking calls from inside its message
/// dispatch, which never return in a process where Qt has made that dispatch thread-safe; and its calls
/// cannot share a time limit.
///
/// From the events that applications send, it remembers which window was activated last, and which object of
/// each application got the keyboard focus last, so that usually no search is needed when a hot key is
/// pressed.
class AtspiBus final : public QObject {
    Q_OBJECT

public:
    AtspiBus() = default;
    ~AtspiBus() override;

    /// Opens the bus whenever the desktop's accessibility switch is on.
    void follow(const AccessibilitySwitch& accessibility);

    [[nodiscard]] bool isOpen() const;

public Q_SLOTS:
    /// Asks the session where the accessibility bus is, and connects. Returns at once; does nothing when the
    /// bus is connected already. May be called again if the bus could not be reached.
    void open();

public:
    /// Connects to the accessibility bus at an address.
    void connectTo(const QString& address);

    /// Calls a method of an object and returns its results; absent when the call failed or the time is over.
    [[nodiscard]] std::optional<QVariantList> call(const AtspiReference& object, const QString& interface,
        const QString& method, const QVariantList& arguments, const TimeBudget& budget) const;
    [[nodiscard]] QVariant property(const AtspiReference& object, const QString& interface,
        const QString& name, const TimeBudget& budget) const;

    /// The process behind a connection. The bus itself answers, so a hung application does no harm.
    [[nodiscard]] std::optional<qint32> processOf(const QString& service, const TimeBudget& budget) const;

    /// The root object of the registry, whose children are the applications.
    [[nodiscard]] static AtspiReference desktop();

    /// The object of process `processId` that got the focus last; null if unknown.
    [[nodiscard]] AtspiReference lastFocused(qint32 processId, const TimeBudget& budget) const;
    /// The same, by bus name.
    [[nodiscard]] AtspiReference lastFocused(const QString& service) const {
        return {service, m_focused.value(service)};
    }
    void rememberFocus(const AtspiReference& object);

    /// The window that last reported that it is active, unless it has reported the opposite since.
    [[nodiscard]] AtspiReference activeWindow() const { return m_activeWindow; }
    /// How often the active window has changed.
    [[nodiscard]] quint64 activationCount() const { return m_activationCount; }

private Q_SLOTS:
    void stateChanged(const QDBusMessage& event);
    void windowActivated(const QDBusMessage& event);
    void windowDeactivated(const QDBusMessage& event);
    void ownerChanged(const QString& name, const QString& oldOwner, const QString& newOwner);

private:
    void close();
    void listen();
    void setActive(const AtspiReference& window, bool active);

    std::optional<QDBusConnection> m_bus;
    QHash<QString, QDBusObjectPath> m_focused;  ///< by bus name
    AtspiReference m_activeWindow;
    quint64 m_activationCount = 0;
    bool m_opening = false;
};

}  // namespace tralio

Q_DECLARE_METATYPE(tralio::AtspiReference)
