#include "platform/linux/portal/portal_hot_keys.h"

#include <QDBusMessage>
#include <QDBusMetaType>

#include <algorithm>
#include <utility>

#include "common/clock.h"
#include "platform/linux/bus/activation_token.h"
#include "platform/linux/portal/shortcut_trigger.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

}  // namespace

PortalHotKeys::PortalHotKeys(Portal& portal, std::vector<Purpose> purposes, Clock& clock)
    : m_portal(portal),
      m_purposes(std::move(purposes)),
      m_clock(clock),
      m_held(clock, [this](HotKeyID id) { count(id); }) {
    qDBusRegisterMetaType<PortalShortcut>();
    qDBusRegisterMetaType<QList<PortalShortcut>>();
    // Any path: some backends send the signal from the portal's path, some from the session's.
    m_portal.bus().connect(QLatin1String(Portal::service), QString(), QLatin1String(interface),
        u"Activated"_s, this, SLOT(activated(QDBusObjectPath, QString, qulonglong, QVariantMap)));
    m_portal.bus().connect(QLatin1String(Portal::service), QString(), QLatin1String(interface),
        u"Deactivated"_s, this, SLOT(deactivated(QDBusObjectPath, QString)));
    connect(&m_portal, &Portal::ready, this, [this] {
        trustDesktop();
        scheduleSession();
    });
    connect(&m_portal, &Portal::gone, this, [this] {
        dropQuestions();
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
    // A hot key that was registered before there was a portal has no reference through which it could have
    // been unregistered: it is replaced here.
    if (std::erase_if(m_hotKeys, [&](const HotKey& other) { return other.id == id; }) > 0)
        scheduleSession();
    const auto trigger = shortcutTrigger(combination);
    const auto purpose = std::ranges::find(m_purposes, id, &Purpose::id);
    if (purpose == m_purposes.end() || !trigger || !canBeHotKey(combination))
        return {HotKeyStatus::invalid, std::nullopt};
    const bool ours = std::any_of(m_hotKeys.begin(), m_hotKeys.end(),
        [&](const HotKey& other) { return other.trigger == *trigger && other.id != id; });
    if (ours)
        return {HotKeyStatus::taken, std::nullopt};

    const HotKeyRef ref{++m_lastRef};
    // Desktops keep the key that they have stored for a name and ignore later preferences. So the name
    // contains the key.
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

void PortalHotKeys::activated(const QDBusObjectPath& session, const QString& shortcut, qulonglong timestamp,
    const QVariantMap& options) {
    if (session.path() != m_session)
        return;
    // the portal works after all: a new session reports the state of the hot keys anew
    m_isToBeRenewed |= bool(m_pauseEnd);
    trustDesktop();
    // With a restored and a newly bound session the same press may arrive twice.
    if (std::exchange(m_lastPress, {shortcut, timestamp}) == std::pair(shortcut, timestamp) && timestamp != 0)
        return;
    const HotKey* pressed = hotKeyBy(shortcut);
    if (!pressed)
        return;
    // Its keys may have been given to it since it was listed without.
    if (m_statusHandler)
        m_statusHandler(pressed->id, HotKeyStatus::registered);
    giveActivationToken(options.value(u"activation_token"_s).toString());
    m_held.press(pressed->id);
}

void PortalHotKeys::deactivated(const QDBusObjectPath& session, const QString& shortcut) {
    const HotKey* released = session.path() == m_session ? hotKeyBy(shortcut) : nullptr;
    if (released)
        m_held.letGo(released->id);
}

const PortalHotKeys::HotKey* PortalHotKeys::hotKeyBy(const QString& shortcut) const {
    const auto found = std::ranges::find(m_hotKeys, shortcut, &HotKey::shortcut);
    return found == m_hotKeys.end() ? nullptr : &*found;
}

void PortalHotKeys::count(HotKeyID id) {
    if (std::exchange(m_isToBeRenewed, false))
        scheduleSession();
    for (const EventHandler& handler : m_handlers)
        handler(id);
}

}  // namespace tralio
