#pragma once

#include <QDBusObjectPath>
#include <QObject>

#include <chrono>
#include <memory>
#include <utility>
#include <vector>

#include "common/clock.h"
#include "hotkeys/hot_key_platform.h"
#include "platform/linux/portal/held_hot_key.h"
#include "platform/linux/portal/portal.h"
#include "platform/linux/portal/portal_shortcut.h"

namespace tralio {

/// Hot keys through the GlobalShortcuts portal, where the desktop decides: it may ask the user, choose
/// another key, or refuse. A registration only says whether there is such a portal; the result arrives later,
/// through the status handler.
///
/// The portal allows one binding per session, so every change of a hot key makes a new session. A session
/// ends with the portal; a new one is made when the portal is back.
class PortalHotKeys final : public QObject, public HotKeyPlatform {
    Q_OBJECT

public:
    static constexpr auto interface = "org.freedesktop.portal.GlobalShortcuts";

    /// How the desktop shows a hot key to the user, and the name under which it stores it for good.
    struct Purpose {
        HotKeyID id;
        QString name;
        QString description;
    };

    PortalHotKeys(Portal& portal, std::vector<Purpose> purposes, Clock& clock);
    ~PortalHotKeys() override;

    EventHandlerRef installEventHandler(EventHandler handler) override;
    void installStatusHandler(StatusHandler handler) override;
    Registration registerHotKey(const KeyCombination& combination, HotKeyID id) override;
    void unregisterHotKey(HotKeyRef ref) override;
    [[nodiscard]] bool isUserAsked() const override { return m_isBinding; }

private Q_SLOTS:
    void activated(const QDBusObjectPath& session, const QString& shortcut, qulonglong timestamp,
        const QVariantMap& options);
    void deactivated(const QDBusObjectPath& session, const QString& shortcut);
    void sessionClosed(const QDBusMessage& closed);

private:
    static constexpr std::chrono::milliseconds shortestPause = std::chrono::minutes(1);

    struct HotKey {
        HotKeyRef ref;
        HotKeyID id;
        QString shortcut;  ///< the id under which the portal knows it
        QString trigger;
        QString description;
    };

    /// Makes a new session in the next turn of the event loop, so that several changes of hot keys share one.
    void scheduleSession();
    /// Makes a new session after the desktop has ended this one: at once the first time, and after a pause
    /// if no hot key press has arrived since then.
    void reopen();
    /// Makes a new session after a pause. The pause doubles from a minute up to an hour.
    void scheduleAfterPause();
    /// A press has arrived, so the portal works: reopen at once next time, and reset the pause.
    void trustDesktop();
    void createSession();
    void begin(const PortalAnswer& created);
    void listShortcuts();
    void bindShortcuts();
    void endSession();
    /// Answers to calls made in this session are ignored from now on.
    void dropQuestions() {
        ++m_generation;
        m_isBinding = false;
    }
    [[nodiscard]] QList<PortalShortcut> wantedShortcuts() const;
    [[nodiscard]] bool hasAll(const PortalAnswer& listed) const;
    /// Null if the shortcut is not ours any more.
    [[nodiscard]] const HotKey* hotKeyBy(const QString& shortcut) const;
    /// Passes a press to the handlers.
    void count(HotKeyID id);
    /// Reports to the status handler which hot keys the desktop has bound, and logs the keys.
    void report(const PortalAnswer& answer) const;
    void reportAll(HotKeyStatus status) const;

    /// Calls a method of the portal; the answer is ignored if the session has changed by then.
    void ask(const QString& method, const QVariantList& arguments, const QVariantMap& options,
        std::chrono::milliseconds limit, const Portal::Done& done);

    Portal& m_portal;
    std::vector<Purpose> m_purposes;
    Clock& m_clock;
    std::vector<EventHandler> m_handlers;
    StatusHandler m_statusHandler;
    std::vector<HotKey> m_hotKeys;
    quint64 m_lastRef = 0;
    quint64 m_generation = 0;  ///< counts sessions, to recognise late answers
    bool m_scheduled = false;
    bool m_isCreating = false;     ///< CreateSession has not been answered yet
    bool m_isBinding = false;      ///< BindShortcuts has not been answered yet
    bool m_mayReopen = false;      ///< at once, without a pause
    bool m_isToBeRenewed = false;  ///< as soon as no hot key is held
    std::chrono::milliseconds m_pause = shortestPause;
    ScheduledCall m_pauseEnd;
    QString m_session;
    std::pair<QString, qulonglong> m_lastPress;
    HeldHotKey m_held;
};

}  // namespace tralio
