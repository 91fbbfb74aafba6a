#include "hotkeys/hot_key_service.h"

#include <utility>

namespace tralio {
namespace {

KeyCombination combinationOf(quint32 keyCode, quint32 modifiers) {
    return {KeyCode{keyCode}, Modifiers::fromInt(modifiers)};
}

}  // namespace

HotKeyService::HotKeyService(Platform platform)
    : m_keys(platform.hotKeys, platform.clock),
      m_selection({platform.workspace, platform.accessibility, platform.scripts, platform.pasteboard,
          platform.keyEvents, platform.clock}),
      m_permissions(platform.permissions, platform.workspace) {}

void HotKeyService::registerGlobalHotKeys(quint32 textKeyCode, quint32 textModifiers, Action onText,
    quint32 ocrKeyCode, quint32 ocrModifiers, Action onOCR) {
    m_keys.registerBoth(combinationOf(textKeyCode, textModifiers), std::move(onText),
        combinationOf(ocrKeyCode, ocrModifiers), std::move(onOCR));
}

void HotKeyService::updateTextHotKey(quint32 keyCode, quint32 modifiers) {
    m_keys.updateText(combinationOf(keyCode, modifiers));
}

void HotKeyService::updateOCRHotKey(quint32 keyCode, quint32 modifiers) {
    m_keys.updateOCR(combinationOf(keyCode, modifiers));
}

quint32 HotKeyService::carbonModifiers(quint32 flags) {
    return modifiersOfFlags(flags).toInt();
}

QString HotKeyService::readableShortcut(quint16 keyCode, quint32 flags) {
    return tralio::readableShortcut({KeyCode{keyCode}, modifiersOfFlags(flags)});
}

void HotKeyService::fetchSelectedText(TextCompletion completion) {
    m_selection.fetch(std::move(completion));
}

std::optional<QString> HotKeyService::getDirectAXSelectedText(qint32 pid) {
    return m_selection.directText(pid);
}

bool HotKeyService::isBrowser(const QString& bundleId) {
    return browserSelectionScript(bundleId).has_value();
}

std::optional<QString> HotKeyService::getBrowserSelectedText(const QString& bundleId) {
    return m_selection.browserText(bundleId);
}

bool HotKeyService::triggerCopyMenuAction(qint32 pid) {
    return m_selection.pressMenuCopy(pid);
}

bool HotKeyService::isAccessibilityGranted() const {
    return m_permissions.isAccessibilityGranted();
}

void HotKeyService::requestAccessibility() {
    m_permissions.requestAccessibility();
}

bool HotKeyService::isScreenCaptureGranted() const {
    return m_permissions.isScreenCaptureGranted();
}

void HotKeyService::requestScreenCapture() {
    m_permissions.requestScreenCapture();
}

}  // namespace tralio
