#include "hotkeys/hot_key_service.h"

#include <QStringBuilder>
#include <QUrl>

#include <utility>

#include "common/clock.h"
#include "common/debug_log.h"
#include "hotkeys/permissions.h"
#include "hotkeys/workspace.h"

namespace tralio {
namespace {

constexpr quint32 signature = 0x5452414C;  // 'TRAL'
constexpr HotKeyID textHotKeyID{signature, 1};
constexpr HotKeyID ocrHotKeyID{signature, 2};

constexpr QStringView accessibilitySettings =
    u"x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility";
constexpr QStringView screenCaptureSettings =
    u"x-apple.systempreferences:com.apple.preference.security?Privacy_ScreenCapture";

}  // namespace

HotKeyService::HotKeyService(Platform platform) : m_platform(platform) {}

void HotKeyService::registerGlobalHotKeys(quint32 textKeyCode, quint32 textModifiers, Action textAction,
    quint32 ocrKeyCode, quint32 ocrModifiers, Action ocrAction) {
    onTextTrigger = std::move(textAction);
    onOCRTrigger = std::move(ocrAction);
    m_eventHandler =
        m_platform.hotKeys.installEventHandler([this](std::optional<HotKeyID> id) { handlePress(id); });
    updateTextHotKey(textKeyCode, textModifiers);
    updateOCRHotKey(ocrKeyCode, ocrModifiers);
}

void HotKeyService::handlePress(std::optional<HotKeyID> id) {
    if (!id)
        return;
    // Looked up when it runs, not now: whoever replaces an action in between means the new one.
    Action HotKeyService::*trigger = id->id == textHotKeyID.id ? &HotKeyService::onTextTrigger
        : id->id == ocrHotKeyID.id                             ? &HotKeyService::onOCRTrigger
                                                               : nullptr;
    if (!trigger)
        return;
    m_platform.clock.after(std::chrono::milliseconds(0), this, [this, trigger] {
        if (const Action action = this->*trigger)
            action();
    });
}

void HotKeyService::updateTextHotKey(quint32 keyCode, quint32 modifiers) {
    reRegister(m_textHotKeyRef, textHotKeyID, keyCode, modifiers,
        {u"Lỗi đăng ký phím tắt Text (code: ", u"Đăng ký phím tắt Text thành công: code="});
}

void HotKeyService::updateOCRHotKey(quint32 keyCode, quint32 modifiers) {
    reRegister(m_ocrHotKeyRef, ocrHotKeyID, keyCode, modifiers,
        {u"Lỗi đăng ký phím tắt OCR (code: ", u"Đăng ký phím tắt OCR thành công: code="});
}

void HotKeyService::reRegister(
    std::optional<HotKeyRef>& ref, HotKeyID id, quint32 keyCode, quint32 modifiers, RegistrationLog log) {
    if (ref)
        m_platform.hotKeys.unregisterHotKey(*std::exchange(ref, std::nullopt));

    const auto registration = m_platform.hotKeys.registerHotKey(keyCode, modifiers, id);
    const QString code = QString::number(keyCode);
    const QString mods = QString::number(modifiers);
    if (registration.status != 0) {
        debugLog(log.refused % code % u", mods: " % mods % u"): " % QString::number(registration.status));
        return;
    }
    ref = registration.ref;
    debugLog(log.registered % code % u", mods=" % mods);
}

bool HotKeyService::isAccessibilityGranted() const {
    return m_platform.permissions.isAccessibilityTrusted();
}

void HotKeyService::requestAccessibility() {
    if (!m_platform.permissions.requestAccessibilityTrust())
        m_platform.workspace.openURL(QUrl(accessibilitySettings.toString()));
}

bool HotKeyService::isScreenCaptureGranted() const {
    return m_platform.permissions.preflightScreenCaptureAccess();
}

void HotKeyService::requestScreenCapture() {
    if (!m_platform.permissions.requestScreenCaptureAccess())
        m_platform.workspace.openURL(QUrl(screenCaptureSettings.toString()));
}

}  // namespace tralio
