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
    m_platform.installStatusHandler([this](HotKeyID id, HotKeyStatus status) { setStatus(id, status); });
    updateText(text);
    updateOCR(ocr);
}

void HotKeys::handlePress(std::optional<HotKeyID> id) {
    if (!id || (id->id != textHotKeyID.id && id->id != ocrHotKeyID.id))
        return;
    const bool isText = id->id == textHotKeyID.id;
    m_clock.after(std::chrono::milliseconds(0), this, [this, isText] {
        // Looked up only now, since an action that was replaced meanwhile must not run.
        if (const auto intercept = m_interceptor)
            intercept(isText ? textHotKeyID : ocrHotKeyID);
        else if (const Action action = isText ? onTextTrigger : onOCRTrigger)
            action();
    });
}

void HotKeys::setStatus(HotKeyID id, HotKeyStatus status) {
    Observable<HotKeyStatus>& known = id == textHotKeyID ? textStatus : ocrStatus;
    if (known() != status)
        known = status;
}

HotKeys::Interception::Interception(HotKeys& keys, std::function<void(HotKeyID)> handler) : m_keys(keys) {
    m_keys.m_interceptor = std::move(handler);
}

HotKeys::Interception::~Interception() {
    m_keys.m_interceptor = nullptr;
}

void HotKeys::updateText(const KeyCombination& combination) {
    reRegister(m_text, m_ocr, combination);
}

void HotKeys::updateOCR(const KeyCombination& combination) {
    reRegister(m_ocr, m_text, combination);
}

void HotKeys::reRegister(HotKey& hotKey, HotKey& other, const KeyCombination& combination) {
    const auto givenUp = hotKey.combination;
    if (hotKey.ref)
        m_platform.unregisterHotKey(*std::exchange(hotKey.ref, std::nullopt));
    hotKey.combination = combination;
    registerNow(hotKey);
    if (!other.ref && givenUp && other.combination == givenUp && combination != givenUp)
        registerNow(other);
}

void HotKeys::registerNow(HotKey& hotKey) {
    const auto registration = m_platform.registerHotKey(*hotKey.combination, hotKey.id);
    setStatus(hotKey.id, registration.status);
    const QString code = QString::number(quint32(hotKey.combination->key));
    const QString mods = QString::number(hotKey.combination->modifiers.toInt());
    if (registration.status != HotKeyStatus::registered) {
        debugLog(u"Lỗi đăng ký phím tắt " % hotKey.name % u" (code: " % code % u", mods: " % mods % u"): " %
            QString::number(qint32(registration.status)));
        return;
    }
    hotKey.ref = registration.ref;
    debugLog(u"Đăng ký phím tắt " % hotKey.name % u" thành công: code=" % code % u", mods=" % mods);
}

}  // namespace tralio
