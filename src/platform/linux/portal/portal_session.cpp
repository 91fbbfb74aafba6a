// The part of PortalHotKeys that creates sessions with the desktop and binds the shortcuts in them.
#include <QDBusMessage>

#include <algorithm>
#include <utility>

#include "common/clock.h"
#include "common/debug_log.h"
#include "platform/linux/portal/portal_hot_keys.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// At a busy login, a backend that is started by the call itself may need most of this.
constexpr auto requestLimit = 30s;
/// For calls that may wait for the user's confirmation.
constexpr std::chrono::milliseconds noLimit = 0ms;

constexpr std::chrono::milliseconds longestPause = 1h;

/// The same in every run: KDE stores shortcuts under it where the program has no application id.
const QString sessionToken = u"tralio"_s;

const QString sessionInterface = u"org.freedesktop.portal.Session"_s;
const QString triggerDescription = u"trigger_description"_s;

/// What the desktop made of a shortcut that it lists. KDE lists one without a trigger if another program has
/// its keys, as Spectacle 6 has Meta+Shift+S; other desktops may list none of their triggers.
HotKeyStatus statusOf(const QVariantMap& properties) {
    const QVariant trigger = properties.value(triggerDescription);
    const bool isKde = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':').contains(u"KDE"_s);
    return isKde && trigger.isValid() && trigger.toString().isEmpty() ? HotKeyStatus::taken
                                                                      : HotKeyStatus::registered;
}

}  // namespace

void PortalHotKeys::createSession() {
    endSession();
    // Two sessions with the same token at one time end each other. When CreateSession is under way, its
    // answer makes the next session.
    if (m_isCreating || m_hotKeys.empty())
        return;
    if (m_portal.version(QLatin1String(interface)) == 0) {
        reportAll(HotKeyStatus::unavailable);
        return;
    }
    // WORKAROUND: KDE 5.27 binds only the shortcuts that are passed here, as in the portal's first drafts.
    const QVariantMap options{
        {u"session_handle_token"_s, sessionToken}, {u"shortcuts"_s, QVariant::fromValue(wantedShortcuts())}};
    m_isCreating = true;
    m_portal.request(QLatin1String(interface), u"CreateSession"_s, {}, options, requestLimit, this,
        [this, generation = m_generation](const PortalAnswer& answer) {
            m_isCreating = false;
            m_session = sessionIn(answer.results);
            if (generation == m_generation)
                begin(answer);
            else
                scheduleSession();  // which first ends this one
        });
}

void PortalHotKeys::begin(const PortalAnswer& created) {
    if (created.outcome != PortalOutcome::granted || m_session.isEmpty()) {
        debugLog(u"PortalHotKeys: no session for hot keys: "_s + created.words());
        reportAll(
            created.outcome == PortalOutcome::cancelled ? HotKeyStatus::refused : HotKeyStatus::unavailable);
        if (created.outcome != PortalOutcome::cancelled)
            scheduleAfterPause();
        return;
    }
    m_portal.bus().connect(QLatin1String(Portal::service), m_session, sessionInterface, u"Closed"_s, this,
        SLOT(sessionClosed(QDBusMessage)));
    listShortcuts();
}

QList<PortalShortcut> PortalHotKeys::wantedShortcuts() const {
    // Always all of them: backends take a binding for the complete list, and forget shortcuts that are
    // missing.
    QList<PortalShortcut> wanted;
    for (const HotKey& hotKey : m_hotKeys) {
        wanted.push_back({hotKey.shortcut,
            {{u"description"_s, hotKey.description}, {u"preferred_trigger"_s, hotKey.trigger}}});
    }
    return wanted;
}

void PortalHotKeys::listShortcuts() {
    ask(
        u"ListShortcuts"_s, {QVariant::fromValue(QDBusObjectPath(m_session))}, {}, requestLimit,
        [this](const PortalAnswer& answer) {
            if (hasAll(answer))
                report(answer);
            else
                bindShortcuts();
        });
}

bool PortalHotKeys::hasAll(const PortalAnswer& listed) const {
    const auto shortcuts = shortcutsIn(listed.results);
    return std::ranges::all_of(m_hotKeys, [&](const HotKey& hotKey) {
        return std::ranges::count(shortcuts, hotKey.shortcut, &PortalShortcut::id) > 0;
    });
}

void PortalHotKeys::bindShortcuts() {
    const QVariantList arguments{
        QVariant::fromValue(QDBusObjectPath(m_session)), QVariant::fromValue(wantedShortcuts()), QString()};
    m_isBinding = true;
    ask(u"BindShortcuts"_s, arguments, {}, noLimit, [this](const PortalAnswer& answer) {
        m_isBinding = false;
        // Look at the shortcuts before the outcome. WORKAROUND: GNOME 48 binds them and still answers with a
        // failure code.
        if (!shortcutsIn(answer.results).isEmpty()) {
            report(answer);
            return;
        }
        if (answer.outcome != PortalOutcome::granted) {
            debugLog(u"PortalHotKeys: hot keys not bound: "_s + answer.words());
            reportAll(HotKeyStatus::refused);
            return;
        }
        // Backends of KDE later than 5.27 answer with an empty list, and report what they bound only in
        // ListShortcuts.
        ask(u"ListShortcuts"_s, {QVariant::fromValue(QDBusObjectPath(m_session))}, {}, requestLimit,
            [this](const PortalAnswer& listed) {
                if (listed.outcome == PortalOutcome::granted) {
                    report(listed);
                    return;
                }
                debugLog(u"PortalHotKeys: hot keys not listed: "_s + listed.words());
                scheduleAfterPause();
            });
    });
}

void PortalHotKeys::report(const PortalAnswer& answer) const {
    const auto bound = shortcutsIn(answer.results);
    for (const HotKey& hotKey : m_hotKeys) {
        const auto found = std::ranges::find(bound, hotKey.shortcut, &PortalShortcut::id);
        const HotKeyStatus status =
            found == bound.end() ? HotKeyStatus::refused : statusOf(found->properties);
        QString outcome = u": not bound by the desktop"_s;
        if (status == HotKeyStatus::taken)
            outcome = u": bound to no key, since another program has it"_s;
        else if (status == HotKeyStatus::registered)
            outcome = u": bound to "_s + found->properties.value(triggerDescription).toString();
        debugLog(u"PortalHotKeys: "_s + hotKey.shortcut + outcome);
        if (m_statusHandler)
            m_statusHandler(hotKey.id, status);
    }
}

void PortalHotKeys::reportAll(HotKeyStatus status) const {
    for (const HotKey& hotKey : m_hotKeys)
        if (m_statusHandler)
            m_statusHandler(hotKey.id, status);
}

void PortalHotKeys::ask(const QString& method, const QVariantList& arguments, const QVariantMap& options,
    std::chrono::milliseconds limit, const Portal::Done& done) {
    m_portal.request(
        QLatin1String(interface), method, arguments, options, limit, this,
        [this, generation = m_generation, done](const PortalAnswer& answer) {
            if (generation == m_generation)
                done(answer);
        });
}

void PortalHotKeys::endSession() {
    dropQuestions();
    if (m_session.isEmpty())
        return;
    m_portal.bus().disconnect(QLatin1String(Portal::service), m_session, sessionInterface, u"Closed"_s, this,
        SLOT(sessionClosed(QDBusMessage)));
    m_portal.bus().send(QDBusMessage::createMethodCall(
        QLatin1String(Portal::service), m_session, sessionInterface, u"Close"_s));
    m_session.clear();
}

void PortalHotKeys::sessionClosed(const QDBusMessage& closed) {
    // The signal may be about a session that we have closed meanwhile.
    if (closed.path() != m_session)
        return;
    debugLog(u"PortalHotKeys: the desktop has ended the session"_s);
    m_session.clear();
    dropQuestions();
    reopen();
}

void PortalHotKeys::reopen() {
    // A desktop that ends every session must not be asked again and again.
    if (std::exchange(m_mayReopen, false)) {
        scheduleSession();
        return;
    }
    dropQuestions();
    reportAll(HotKeyStatus::unavailable);  // until the next session
    scheduleAfterPause();
}

void PortalHotKeys::trustDesktop() {
    m_mayReopen = true;
    m_pause = shortestPause;
    m_pauseEnd.takeBack();
}

void PortalHotKeys::scheduleAfterPause() {
    if (m_pauseEnd)
        return;
    m_pauseEnd = m_clock.after(m_pause, [this] {
        const ScheduledCall over = std::exchange(m_pauseEnd, {});
        scheduleSession();
    });
    m_pause = std::min(2 * m_pause, longestPause);
}

}  // namespace tralio
