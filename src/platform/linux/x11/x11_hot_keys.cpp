#include "platform/linux/x11/x11_hot_keys.h"

#include <algorithm>
#include <utility>

#include "common/debug_log.h"
#include "platform/linux/keyboard/key_codes.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

constexpr auto releasePoll = 20ms;
const std::vector<quint16> anyState{XCB_MOD_MASK_ANY};
/// After our synthetic release the server no longer knows that the key is down, but reports its repeats;
/// without one for this long it counts as released.
constexpr qint64 longestSilence = 3000;  // milliseconds

}  // namespace

X11HotKeys::X11HotKeys(X11Connection& connection, X11RawInput& rawInput)
    : m_connection(connection), m_rawInput(rawInput), m_grabs(connection), m_modifiers(connection) {
    m_connection.addEventHandler([this](const xcb_generic_event_t& event) { handle(event); });
    m_releaseWatch.setInterval(releasePoll);
    QObject::connect(&m_releaseWatch, &QTimer::timeout, &m_releaseWatch, [this] { watchForRelease(); });
}

EventHandlerRef X11HotKeys::installEventHandler(EventHandler handler) {
    m_handlers.push_back(std::move(handler));
    return EventHandlerRef{m_handlers.size()};
}

void X11HotKeys::installStatusHandler(StatusHandler handler) {
    m_statusHandler = std::move(handler);
}

HotKeyPlatform::Registration X11HotKeys::registerHotKey(const KeyCombination& combination, HotKeyID id) {
    const auto xKeyCode = x11KeyCode(combination.key);
    if (!xKeyCode || !canBeHotKey(combination))
        return {HotKeyStatus::invalid, std::nullopt};

    const HotKey hotKey{HotKeyRef{++m_lastRef}, id, *xKeyCode, combination.modifiers};
    const bool ours = std::any_of(m_hotKeys.begin(), m_hotKeys.end(), [&](const HotKey& other) {
        return other.keyCode == hotKey.keyCode && other.modifiers == hotKey.modifiers;
    });
    if (ours)
        return {HotKeyStatus::taken, std::nullopt};
    endTaps();
    if (const HotKeyStatus status = grab(hotKey); status != HotKeyStatus::registered)
        return {status, std::nullopt};
    m_hotKeys.push_back(hotKey);
    // A combination that has just been recorded is still held down: its repeats are not presses.
    if (m_heldKey != *xKeyCode && isDown(*xKeyCode))
        hold(*xKeyCode);
    return {HotKeyStatus::registered, hotKey.ref};
}

void X11HotKeys::unregisterHotKey(HotKeyRef ref) {
    const auto found = std::find_if(
        m_hotKeys.begin(), m_hotKeys.end(), [&](const HotKey& hotKey) { return hotKey.ref == ref; });
    if (found == m_hotKeys.end())
        return;
    endTaps();
    const HotKey gone = *found;
    m_hotKeys.erase(found);
    if (m_heldKey != gone.keyCode)
        ungrab(gone);  // a held key is released as a whole in letGo()
}

HotKeyStatus X11HotKeys::grab(const HotKey& hotKey) {
    if (m_grabs.take(hotKey.keyCode, statesOf(hotKey)))
        return HotKeyStatus::registered;
    ungrab(hotKey);  // another program owns it with some state of the locks: half a hot key is none
    return HotKeyStatus::taken;
}

void X11HotKeys::ungrab(const HotKey& hotKey) {
    m_grabs.giveUp(hotKey.keyCode, statesOf(hotKey));
}

std::vector<quint16> X11HotKeys::statesOf(const HotKey& hotKey) const {
    return m_modifiers.withLocks(m_modifiers.stateFor(hotKey.modifiers));
}

void X11HotKeys::handle(const xcb_generic_event_t& event) {
    switch (event.response_type & 0x7f) {
        case XCB_KEY_PRESS:
            press(reinterpret_cast<const xcb_key_press_event_t&>(event));
            break;
        case XCB_MAPPING_NOTIFY:
            if (reinterpret_cast<const xcb_mapping_notify_event_t&>(event).request != XCB_MAPPING_POINTER)
                remapKeyboard();
            break;
        default:
            break;
    }
}

void X11HotKeys::press(const xcb_key_press_event_t& event) {
    xcb_ungrab_keyboard(m_connection.xcb(), event.time);
    xcb_flush(m_connection.xcb());

    if (m_heldKey == event.detail)
        return;
    const int known = event.state & m_modifiers.significant();
    const int state = known == 0 ? m_releasedUnderHand : known;
    const auto pressed = std::find_if(m_hotKeys.begin(), m_hotKeys.end(), [&](const HotKey& hotKey) {
        return hotKey.keyCode == event.detail && m_modifiers.stateFor(hotKey.modifiers) == state;
    });
    if (pressed == m_hotKeys.end())
        return;

    hold(event.detail);
    const HotKeyID id = pressed->id;
    for (const EventHandler& handler : m_handlers)
        handler(id);
}

void X11HotKeys::hold(quint8 keyCode) {
    if (m_heldKey)
        letGo();
    m_heldKey = keyCode;
    m_releaseWatch.start();
    grabHeldKey();
}

void X11HotKeys::grabHeldKey() {
    const bool isPassing = m_pass && m_pass->keyCode == *m_heldKey;
    if (!isPassing && m_grabs.take(*m_heldKey, anyState))
        return;
    // Another program has grabbed the key with some modifiers: take the combinations that are free, first
    // the one without modifiers, which would type a character. All in one round trip: the popover waits.
    std::vector<quint16> states;
    for (const quint16 state : m_modifiers.significantCombinations()) {
        const std::vector<quint16> locked = m_modifiers.withLocks(state);
        if (!isPassing || state != m_modifiers.stateFor(m_pass->modifiers))
            states.insert(states.end(), locked.begin(), locked.end());
    }
    m_grabs.take(*m_heldKey, states);
}

bool X11HotKeys::isDown(quint8 keyCode) const {
    const XcbPtr<xcb_query_keymap_reply_t> keymap{
        xcb_query_keymap_reply(m_connection.xcb(), xcb_query_keymap(m_connection.xcb()), nullptr)};
    return keymap && (keymap->keys[keyCode / 8] >> (keyCode % 8) & 1) != 0;
}

void X11HotKeys::watchForRelease() {
    // The keyboard is not grabbed, so the release event goes to the application in front: poll instead.
    const bool down = isDown(*m_heldKey);
    if (down)
        m_sinceFeignedRelease.invalidate();  // the key has repeated: the server reports its real state again
    else if (!m_sinceFeignedRelease.isValid() || m_sinceFeignedRelease.hasExpired(longestSilence))
        letGo();
}

void X11HotKeys::letGo() {
    const quint8 key = *m_heldKey;
    m_heldKey.reset();
    m_releaseWatch.stop();
    m_sinceFeignedRelease.invalidate();
    m_keyReleases.reset();
    m_grabs.giveUp(key, anyState);
    for (const HotKey& hotKey : m_hotKeys) {
        if (hotKey.keyCode == key) {
            grabAgain(hotKey);
            grabTaps(hotKey);
        }
    }
    xcb_flush(m_connection.xcb());
}

quint16 X11HotKeys::heldModifiers() const {
    const XcbPtr<xcb_query_pointer_reply_t> pointer{xcb_query_pointer_reply(
        m_connection.xcb(), xcb_query_pointer(m_connection.xcb(), m_connection.root()), nullptr)};
    return pointer ? pointer->mask & m_modifiers.significant() : 0;
}

quint16 X11HotKeys::beginFeignedRelease() {
    // Listen before asking what is held, so that no release is missed in between: the first key that the
    // user releases, other than the one of a hot key, ends the taps.
    if (!m_modifierReleases)
        m_modifierReleases.emplace(
            m_rawInput, X11RawInput::Kind::keyReleased, [this](const X11RawInput::Event& event) {
                const bool isTap = std::any_of(m_hotKeys.begin(), m_hotKeys.end(),
                    [&](const HotKey& hotKey) { return hotKey.keyCode == event.detail; });
                if (!isTap)
                    endTaps();
            });
    return heldModifiers();
}

void X11HotKeys::endFeignedRelease(quint16 held) {
    if (!m_rawInput.isAvailable())
        return;  // nothing would report when the user releases them
    if ((held & ~m_releasedUnderHand) == 0) {
        if (m_releasedUnderHand == 0)
            m_modifierReleases.reset();
        return;
    }
    giveUpTaps();
    m_releasedUnderHand = held;
    for (const HotKey& hotKey : m_hotKeys)
        grabTaps(hotKey);
}

void X11HotKeys::grabTaps(const HotKey& hotKey) {
    if (m_releasedUnderHand != 0 && m_modifiers.stateFor(hotKey.modifiers) == m_releasedUnderHand)
        m_grabs.take(hotKey.keyCode, m_modifiers.withLocks(0));
}

void X11HotKeys::endTaps() {
    m_modifierReleases.reset();
    giveUpTaps();
}

void X11HotKeys::giveUpTaps() {
    if (m_releasedUnderHand == 0)
        return;
    const quint16 released = std::exchange(m_releasedUnderHand, 0);
    for (const HotKey& hotKey : m_hotKeys)
        if (m_modifiers.stateFor(hotKey.modifiers) == released)
            m_grabs.giveUp(hotKey.keyCode, m_modifiers.withLocks(0));
    // The grabs of taps may also have been those of a hot key without modifiers, or of the held key: grab
    // them again.
    for (const HotKey& hotKey : m_hotKeys)
        if (!hotKey.modifiers)
            grabAgain(hotKey);
    if (m_heldKey)
        grabHeldKey();
}

bool X11HotKeys::isHotKey(quint8 keyCode, quint16 held) const {
    return std::ranges::any_of(
        m_hotKeys,
        [&](const HotKey& hotKey) {
            const quint16 wanted = m_modifiers.stateFor(hotKey.modifiers);
            return hotKey.keyCode == keyCode && (held & wanted) == wanted;
        });
}

bool X11HotKeys::letPass(quint8 keyCode, Modifiers modifiers) {
    if (m_heldKey == keyCode && !m_keyReleases)
        m_keyReleases.emplace(
            m_rawInput, X11RawInput::Kind::keyReleased, [this](const X11RawInput::Event& event) {
                if (m_heldKey == event.detail)
                    letGo();
            });
    const bool down = isDown(keyCode);
    m_pass = Pass{keyCode, modifiers, down && m_heldKey == keyCode};
    if (m_heldKey == keyCode) {
        m_grabs.giveUp(keyCode, anyState);
        grabHeldKey();
    } else {
        for (const HotKey& hotKey : m_hotKeys)
            if (hotKey.keyCode == keyCode && hotKey.modifiers == modifiers)
                ungrab(hotKey);
    }
    // A repeat that has not been read yet has activated a grab of the whole keyboard.
    xcb_ungrab_keyboard(m_connection.xcb(), XCB_CURRENT_TIME);
    return down;
}

void X11HotKeys::endPass() {
    const Pass pass = *std::exchange(m_pass, std::nullopt);
    if (m_heldKey != pass.keyCode) {
        for (const HotKey& hotKey : m_hotKeys)
            if (hotKey.keyCode == pass.keyCode && hotKey.modifiers == pass.modifiers)
                grabAgain(hotKey);
        return;
    }
    if (pass.releasesHeldKey && m_rawInput.isAvailable())
        m_sinceFeignedRelease.start();
    grabHeldKey();
}

void X11HotKeys::remapKeyboard() {
    const ModifierMap modifiers(m_connection);
    if (modifiers == m_modifiers)
        return;  // the key codes of hot keys are positions: nothing else matters
    endTaps();
    for (const HotKey& hotKey : m_hotKeys)
        ungrab(hotKey);
    m_modifiers = modifiers;
    for (const HotKey& hotKey : m_hotKeys)
        grabAgain(hotKey);
}

void X11HotKeys::grabAgain(const HotKey& hotKey) {
    const HotKeyStatus status = grab(hotKey);
    if (status != HotKeyStatus::registered)
        debugLog(u"X11HotKeys: another program has taken the hot key %1"_s.arg(hotKey.id.id));
    if (m_statusHandler)
        m_statusHandler(hotKey.id, status);
}

}  // namespace tralio
