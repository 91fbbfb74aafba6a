#include "hotkeys/hot_keys.h"

#include <QStringBuilder>

#include <utility>

#include "common/clock.h"
#include "common/debug_log.h"

namespace tralio {
HotKeys::HotKeys(HotKeyPlatform& platform, Clock& clock) : m_platform(platform), m_clock(clock) {}

void HotKeys::registerBoth(
    const KeyCombination& text, Action textAction, const KeyCombination& ocr, Action ocrAction) {
    onTextTrigger = std::move(textAction);
    onOCRTrigger = std::move(ocrAction);
    m_eventHandler = m_platform.installEventHandler([this](std::optional<HotKeyID> id) { handlePress(id); });
    updateText(text);
    updateOCR(ocr);
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

void HotKeys::updateText(const KeyCombination& combination) {
    reRegister(m_textRef, textHotKeyID, combination,
        {u"Lỗi đăng ký phím tắt Text (code: ", u"Đăng ký phím tắt Text thành công: code="});
}

void HotKeys::updateOCR(const KeyCombination& combination) {
    reRegister(m_ocrRef, ocrHotKeyID, combination,
        {u"Lỗi đăng ký phím tắt OCR (code: ", u"Đăng ký phím tắt OCR thành công: code="});
}

void HotKeys::reRegister(
    std::optional<HotKeyRef>& ref, HotKeyID id, const KeyCombination& combination, RegistrationLog log) {
    if (ref)
        m_platform.unregisterHotKey(*std::exchange(ref, std::nullopt));

    const auto registration = m_platform.registerHotKey(combination, id);
    const QString code = QString::number(quint32(combination.key));
    const QString mods = QString::number(combination.modifiers.toInt());
    if (registration.status != HotKeyStatus::registered) {
        debugLog(
            log.refused % code % u", mods: " % mods % u"): " % QString::number(qint32(registration.status)));
        return;
    }
    ref = registration.ref;
    debugLog(log.registered % code % u", mods=" % mods);
}

}  // namespace tralio
