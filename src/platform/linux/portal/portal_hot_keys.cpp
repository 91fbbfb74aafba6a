#include "platform/linux/portal/portal_hot_keys.h"

#include <QDBusMessage>
#include <QDBusMetaType>

#include <algorithm>
#include <utility>

#include "common/clock.h"
#include "common/debug_log.h"
#include "platform/linux/bus/activation_token.h"
#include "platform/linux/portal/shortcut_trigger.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// A backend that the call itself starts, at a busy login, may need most of it.
constexpr auto requestLimit = 30s;
/// Of a hot key on a desktop that does not tell when it is let go.
constexpr auto longestHold = 1s;
/// For what the user may have to confirm.
constexpr std::chrono::milliseconds noLimit = 0ms;

constexpr std::chrono::milliseconds shortestPause = 1min;
constexpr std::chrono::milliseconds longestPause = 1h;

/// The same in every run: for want of an application id, KDE keeps shortcuts by it.
const QString sessionToken = u"tralio"_s;

const QString sessionInterface = u"org.freedesktop.portal.Session"_s;

QString whatHappened(const PortalAnswer& answer) {
    switch (answer.outcome) {
        case PortalOutcome::granted:
            return u"granted"_s;
        case PortalOutcome::cancelled:
            return u"cancelled by the user"_s;
        case PortalOutcome::silent:
            return u"no answer"_s;
        case PortalOutcome::failed:
            break;
    }
    return answer.error.isEmpty() ? u"refused"_s : u"refused: "_s + answer.error;
}

}  // namespace

PortalHotKeys::PortalHotKeys(Portal& portal, std::vector<Purpose> purposes, Clock& clock)
    : m_portal(portal), m_purposes(std::move(purposes)), m_clock(clock), m_pause(shortestPause) {
    qDBusRegisterMetaType<PortalShortcut>();
    qDBusRegisterMetaType<QList<PortalShortcut>>();
    // Not at a path: some backends send it from the portal's, some from the session's.
    m_portal.bus().connect(QLatin1String(Portal::service), QString(), QLatin1String(interface),
        u"Activated"_s, this, SLOT(activated(QDBusObjectPath, QString, qulonglong, QVariantMap)));
    m_portal.bus().connect(QLatin1String(Portal::service), QString(), QLatin1String(interface),
        u"Deactivated"_s, this, SLOT(deactivated(QDBusObjectPath, QString)));
    connect(&m_portal, &Portal::ready, this, [this] {
        trustDesktop();
        scheduleSession();
    });
    connect(&m_portal, &Portal::gone, this, [this] {
        ++m_generation;
        m_session.clear();
    });
    connect(&m_portal, &Portal::backendGone, this, &PortalHotKeys::reopen);
}

PortalHotKeys::~PortalHotKeys() {
    endSession();
}

EventHandlerRef PortalHotKeys::installEventHandler(EventHandler handler) {
    m_handlers.push_back(std::move(handler));
    return EventHandlerRef{m_handlers.size()};
}

void PortalHotKeys::installStatusHandler(StatusHandler handler) {
    m_statusHandler = std::move(handler);
}

HotKeyPlatform::Registration PortalHotKeys::registerHotKey(const KeyCombination& combination, HotKeyID id) {
    // A hot key that waits for a portal has no reference by which it could have been given up.
    if (std::erase_if(m_hotKeys, [&](const HotKey& other) { return other.id == id; }) > 0)
        scheduleSession();
    const auto trigger = shortcutTrigger(combination);
    const auto purpose = std::find_if(
        m_purposes.begin(), m_purposes.end(), [&](const Purpose& candidate) { return candidate.id == id; });
    if (purpose == m_purposes.end() || !trigger || !canBeHotKey(combination))
        return {HotKeyStatus::invalid, std::nullopt};
    const bool ours = std::any_of(m_hotKeys.begin(), m_hotKeys.end(),
        [&](const HotKey& other) { return other.trigger == *trigger && other.id != id; });
    if (ours)
        return {HotKeyStatus::taken, std::nullopt};

    const HotKeyRef ref{++m_lastRef};
    // Desktops keep the key that they have for a name, whatever we wish for later: another key, another name.
    m_hotKeys.push_back({ref, id, purpose->name + u'.' + *trigger, *trigger, purpose->description});
    scheduleSession();
    if (m_portal.awaitVersion(QLatin1String(interface)) == 0)
        return {HotKeyStatus::unavailable, std::nullopt};
    return {HotKeyStatus::registered, ref};
}

void PortalHotKeys::unregisterHotKey(HotKeyRef ref) {
    if (std::erase_if(m_hotKeys, [&](const HotKey& hotKey) { return hotKey.ref == ref; }) > 0)
        scheduleSession();
}

void PortalHotKeys::scheduleSession() {
    if (std::exchange(m_scheduled, true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_scheduled = false;
            createSession();
        },
        Qt::QueuedConnection);
}

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
        debugLog(u"PortalHotKeys: no session for hot keys: "_s + whatHappened(created));
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
    return std::all_of(m_hotKeys.begin(), m_hotKeys.end(), [&](const HotKey& hotKey) {
        return std::any_of(shortcuts.begin(), shortcuts.end(),
            [&](const PortalShortcut& shortcut) { return shortcut.id == hotKey.shortcut; });
    });
}

void PortalHotKeys::bindShortcuts() {
    const QVariantList arguments{
        QVariant::fromValue(QDBusObjectPath(m_session)), QVariant::fromValue(wantedShortcuts()), QString()};
    ask(u"BindShortcuts"_s, arguments, {}, noLimit, [this](const PortalAnswer& answer) {
        // Before the outcome. WORKAROUND: GNOME 48 binds them and answers with a number that means failure.
        if (!shortcutsIn(answer.results).isEmpty()) {
            report(answer);
            return;
        }
        if (answer.outcome != PortalOutcome::granted) {
            debugLog(u"PortalHotKeys: hot keys not bound: "_s + whatHappened(answer));
            reportAll(HotKeyStatus::refused);
            return;
        }
        // Later backends of KDE say so only when asked.
        ask(u"ListShortcuts"_s, {QVariant::fromValue(QDBusObjectPath(m_session))}, {}, requestLimit,
            [this](const PortalAnswer& listed) { report(listed); });
    });
}

void PortalHotKeys::report(const PortalAnswer& answer) const {
    const auto bound = shortcutsIn(answer.results);
    for (const HotKey& hotKey : m_hotKeys) {
        const auto found = std::find_if(bound.begin(), bound.end(),
            [&](const PortalShortcut& shortcut) { return shortcut.id == hotKey.shortcut; });
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
    ++m_generation;
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
    ++m_generation;
    reopen();
}

void PortalHotKeys::reopen() {
    // One that ends every session is not to be pestered.
    if (std::exchange(m_mayReopen, false)) {
        scheduleSession();
        return;
    }
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

void PortalHotKeys::activated(const QDBusObjectPath& session, const QString& shortcut, qulonglong timestamp,
    const QVariantMap& options) {
    if (session.path() != m_session)
        return;
    m_isToBeRenewed |= bool(m_pauseEnd);  // it works, and what was told meanwhile is to be told anew
    trustDesktop();
    // A restored session and a bound one may both tell of the same press.
    if (std::exchange(m_lastPress, {shortcut, timestamp}) == std::pair(shortcut, timestamp) && timestamp != 0)
        return;
    const auto pressed = std::find_if(m_hotKeys.begin(), m_hotKeys.end(),
        [&](const HotKey& hotKey) { return hotKey.shortcut == shortcut; });
    if (pressed == m_hotKeys.end())
        return;
    giveActivationToken(options.value(u"activation_token"_s).toString());
    if (m_release && m_held != pressed->shortcut)
        release();
    m_held = pressed->shortcut;
    m_heldId = pressed->id;
    // A desktop that repeats it while it is held puts this off.
    m_release = m_clock.after(longestHold, [this] { release(); });
}

void PortalHotKeys::deactivated(const QDBusObjectPath& session, const QString& shortcut) {
    if (session.path() == m_session && shortcut == m_held && m_release)
        release();
}

void PortalHotKeys::release() {
    const ScheduledCall over = std::exchange(m_release, {});
    if (std::exchange(m_isToBeRenewed, false))
        scheduleSession();
    for (const EventHandler& handler : m_handlers)
        handler(m_heldId);
}

}  // namespace tralio
