// The side of the portal's hot keys that holds a session with the desktop and has them bound in it.
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

/// A backend that the call itself starts, at a busy login, may need most of it.
constexpr auto requestLimit = 30s;
/// For what the user may have to confirm.
constexpr std::chrono::milliseconds noLimit = 0ms;

constexpr std::chrono::milliseconds longestPause = 1h;

/// The same in every run: for want of an application id, KDE keeps shortcuts by it.
const QString sessionToken = u"tralio"_s;

const QString sessionInterface = u"org.freedesktop.portal.Session"_s;

}  // namespace

void PortalHotKeys::createSession() {
    endSession();
    // Two sessions of one name at a time end each other; the answer that is awaited makes the next.
    if (m_isCreating || m_hotKeys.empty())
        return;
    if (m_portal.version(QLatin1String(interface)) == 0) {
        reportAll(HotKeyStatus::unavailable);
        return;
    }
    // The portal's first drafts took the shortcuts here; KDE 5 still binds these and no others.
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
                scheduleSession();  // which ends this one
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
    // All of them: backends take a binding for the whole list, and forget what is not in it.
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
        // Before the outcome. WORKAROUND: GNOME 48 binds them and answers with a number that means failure.
        if (!shortcutsIn(answer.results).isEmpty()) {
            report(answer);
            return;
        }
        if (answer.outcome != PortalOutcome::granted) {
            debugLog(u"PortalHotKeys: hot keys not bound: "_s + answer.words());
            reportAll(HotKeyStatus::refused);
            return;
        }
        // Later backends of KDE say so only when asked.
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
        debugLog(u"PortalHotKeys: "_s + hotKey.shortcut +
            (found == bound.end()
                    ? u": not bound by the desktop"_s
                    : u": bound to "_s + found->properties.value(u"trigger_description"_s).toString()));
        if (m_statusHandler)
            m_statusHandler(
                hotKey.id, found == bound.end() ? HotKeyStatus::refused : HotKeyStatus::registered);
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
    // One that we have given up meanwhile may still be told of.
    if (closed.path() != m_session)
        return;
    debugLog(u"PortalHotKeys: the desktop has ended the session"_s);
    m_session.clear();
    dropQuestions();
    reopen();
}

void PortalHotKeys::reopen() {
    // One that ends every session is not to be pestered.
    if (std::exchange(m_mayReopen, false)) {
        scheduleSession();
        return;
    }
    dropQuestions();
    reportAll(HotKeyStatus::unavailable);  // until then
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
