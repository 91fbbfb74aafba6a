#include "hotkeys/hot_keys.h"

#include <QStringBuilder>

#include <utility>

#include "common/clock.h"
#include "common/debug_log.h"

namespace tralio {
namespace {

constexpr quint32 signature = 0x5452414C;  // 'TRAL'
constexpr HotKeyID textHotKeyID{signature, 1};
constexpr HotKeyID ocrHotKeyID{signature, 2};

}  // namespace

HotKeys::HotKeys(HotKeyPlatform& platform, Clock& clock) : m_platform(platform), m_clock(clock) {}

void HotKeys::registerBoth(quint32 textKeyCode, quint32 textModifiers, Action textAction, quint32 ocrKeyCode,
    quint32 ocrModifiers, Action ocrAction) {
    onTextTrigger = std::move(textAction);
    onOCRTrigger = std::move(ocrAction);
    m_eventHandler = m_platform.installEventHandler([this](std::optional<HotKeyID> id) { handlePress(id); });
    updateText(textKeyCode, textModifiers);
    updateOCR(ocrKeyCode, ocrModifiers);
}

void HotKeys::handlePress(std::optional<HotKeyID> id) {
    if (!id)
        return;
    // Looked up when it runs, not now: whoever replaces an action in between means the new one.
    Action HotKeys::*trigger = id->id == textHotKeyID.id ? &HotKeys::onTextTrigger
        : id->id == ocrHotKeyID.id                       ? &HotKeys::onOCRTrigger
                                                         : nullptr;
    if (!trigger)
        return;
    m_clock.after(std::chrono::milliseconds(0), this, [this, trigger] {
        if (const Action action = this->*trigger)
            action();
    });
}

void HotKeys::updateText(quint32 keyCode, quint32 modifiers) {
    reRegister(m_textRef, textHotKeyID, keyCode, modifiers,
        {u"Lỗi đăng ký phím tắt Text (code: ", u"Đăng ký phím tắt Text thành công: code="});
}

void HotKeys::updateOCR(quint32 keyCode, quint32 modifiers) {
    reRegister(m_ocrRef, ocrHotKeyID, keyCode, modifiers,
        {u"Lỗi đăng ký phím tắt OCR (code: ", u"Đăng ký phím tắt OCR thành công: code="});
}

void HotKeys::reRegister(
    std::optional<HotKeyRef>& ref, HotKeyID id, quint32 keyCode, quint32 modifiers, RegistrationLog log) {
    if (ref)
        m_platform.unregisterHotKey(*std::exchange(ref, std::nullopt));

    const auto registration = m_platform.registerHotKey(keyCode, modifiers, id);
    const QString code = QString::number(keyCode);
    const QString mods = QString::number(modifiers);
    if (registration.status != 0) {
        debugLog(log.refused % code % u", mods: " % mods % u"): " % QString::number(registration.status));
        return;
    }
    ref = registration.ref;
    debugLog(log.registered % code % u", mods=" % mods);
}

}  // namespace tralio
