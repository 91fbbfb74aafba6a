#include "ui/settings/settings_state.h"

#include <QPointer>

#include <algorithm>
#include <tuple>
#include <utility>

#include "common/clock.h"
#include "common/localized_error.h"
#include "common/on_change.h"
#include "engine/ai_service.h"
#include "hotkeys/permission_watch.h"
#include "state/app_settings.h"
#include "state/app_state.h"
#include "ui/undo/undo_offer.h"
#include "update/update_service.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

constexpr Modifiers controlOptionCommand = Modifier::control | Modifier::option | Modifier::command;

}  // namespace

SettingsState::SettingsState(Dependencies needs) : m_needs(std::move(needs)) {
    connect(
        &m_needs.permissions, &ObservableObject::objectWillChange, this, &ObservableObject::objectWillChange);
    // The result is told of what was tested. Undoing a reset can change that, too.
    onChange(
        settings(), this,
        [this] {
            const EndpointSettings tested = settings().endpointSettings();
            return std::tuple(tested.selectedPresetId, tested.baseURL, tested.model, tested.apiKey);
        },
        [this] { testResult = std::nullopt; });
}

SettingsState::~SettingsState() {
    m_test.request_stop();
}

bool SettingsState::isAccessibilityGranted() const {
    return m_needs.permissions.isAccessibilityGranted();
}

bool SettingsState::isScreenCaptureGranted() const {
    return m_needs.permissions.isScreenCaptureGranted();
}

const QList<HotKeyPresetItem>& SettingsState::presets(HotKeyRecordTarget target) {
    return target == HotKeyRecordTarget::textSelection ? HotKeyPresetItem::textHotKeyPresets()
                                                       : HotKeyPresetItem::ocrHotKeyPresets();
}

const QString& SettingsState::display(HotKeyRecordTarget target) const {
    const AppSettings& settings = m_needs.settings;
    return target == HotKeyRecordTarget::textSelection ? settings.hotKeyDisplay()
                                                       : settings.ocrHotKeyDisplay();
}

std::optional<QString> SettingsState::hotKeyTrouble(HotKeyRecordTarget target) const {
    const AppSettings& settings = m_needs.settings;
    const bool isText = target == HotKeyRecordTarget::textSelection;
    HotKeys& keys = m_needs.hotKeys.keys();
    switch (isText ? keys.textStatus() : keys.ocrStatus()) {
        case HotKeyStatus::registered:
            return std::nullopt;
        case HotKeyStatus::taken:
            return settings.hotKeyKeyCode() == settings.ocrHotKeyKeyCode() &&
                    settings.hotKeyModifiers() == settings.ocrHotKeyModifiers()
                ? u"Phím tắt này trùng với phím tắt kia."_s
                : u"Phím tắt này đang được ứng dụng khác sử dụng."_s;
        case HotKeyStatus::invalid:
            return u"Phím này không dùng làm phím tắt được."_s;
        case HotKeyStatus::refused:
            return u"Màn hình làm việc không nhận phím tắt này."_s;
        case HotKeyStatus::unavailable:
            return u"Phiên làm việc này không cho ứng dụng đặt phím tắt."_s;
    }
    Q_UNREACHABLE();
}

const ProviderPreset* SettingsState::selectedProvider() const {
    const QList<ProviderPreset>& presets = ProviderPreset::presets();
    const auto found = std::find_if(presets.cbegin(), presets.cend(),
        [this](const ProviderPreset& preset) { return preset.id == m_needs.settings.selectedPresetId(); });
    return found == presets.cend() ? nullptr : &*found;
}

bool SettingsState::usesOwnGateway() const {
    return ProviderPreset::bringsKey(m_needs.settings.selectedPresetId());
}

int SettingsState::downloadPercentage() const {
    return static_cast<int>(m_needs.updates.downloadProgress() * 100);
}

void SettingsState::panelAppeared() {
    m_needs.permissions.checkNow();
}

void SettingsState::panelDisappeared() {
    stopRecording();
}

void SettingsState::startRecording(HotKeyRecordTarget target) {
    stopRecording();
    recordingTarget = target;
    m_localEventMonitor = std::make_unique<KeyDownMonitor>(
        m_needs.keyCodes,
        [this, target](const KeyCombination& pressed) { return keyWentDown(target, pressed); });

    m_interception = std::make_unique<HotKeys::Interception>(
        m_needs.hotKeys.keys(), [this, target](HotKeyID id) { hotKeyPressed(target, id); });
}

void SettingsState::hotKeyPressed(HotKeyRecordTarget target, HotKeyID id) {
    // The other hot key is ignored: recording its combination would make both equal, and one of them dead.
    const bool isText = target == HotKeyRecordTarget::textSelection;
    if (id != (isText ? textHotKeyID : ocrHotKeyID))
        return;
    const AppSettings& settings = m_needs.settings;
    const quint32 key = isText ? settings.hotKeyKeyCode() : settings.ocrHotKeyKeyCode();
    const quint32 modifiers = isText ? settings.hotKeyModifiers() : settings.ocrHotKeyModifiers();
    recorded(target, {{KeyCode{key}, Modifiers::fromInt(modifiers)}, display(target)});
}

bool SettingsState::keyWentDown(HotKeyRecordTarget target, const KeyCombination& pressed) {
    if (pressed.key == KeyCode::escape) {
        m_needs.clock.after(0ms, this, [this] { stopRecording(); });
        return true;
    }
    if (!(pressed.modifiers & controlOptionCommand))
        return false;
    recorded(target, {pressed, readableShortcut(pressed)});
    return true;
}

void SettingsState::recorded(HotKeyRecordTarget target, const Shortcut& shortcut) {
    m_needs.clock.after(
        0ms, this,
        [this, target, shortcut] {
            save(target, shortcut);
            stopRecording();
        });
}

void SettingsState::save(HotKeyRecordTarget target, const Shortcut& shortcut) {
    if (target == HotKeyRecordTarget::textSelection)
        settings().updateCustomHotKey(
            quint32(shortcut.combination.key), shortcut.combination.modifiers.toInt(), shortcut.display);
    else
        settings().updateCustomOCRHotKey(
            quint32(shortcut.combination.key), shortcut.combination.modifiers.toInt(), shortcut.display);
}

void SettingsState::stopRecording() {
    recordingTarget = std::nullopt;
    m_localEventMonitor.reset();
    m_interception.reset();
}

void SettingsState::toggleRecording(HotKeyRecordTarget target) {
    if (recordingTarget() == target)
        stopRecording();
    else
        startRecording(target);
}

void SettingsState::chooseHotKey(HotKeyRecordTarget target, const HotKeyPresetItem& preset) {
    save(target, {preset.combination, preset.display});
}

bool SettingsState::isClipboardCheckChanged() const {
    return m_needs.settings.autoPaste() != m_needs.isClipboardChecked;
}

void SettingsState::chooseProvider(const QString& presetId) {
    for (const ProviderPreset& preset : ProviderPreset::presets()) {
        if (preset.id == presetId) {
            if (!m_needs.undo.extend() && settings().wouldLoseOwn(preset))
                m_needs.undo.make(
                    u"Đã đổi nhà cung cấp"_s, settings().rememberedEndpoint(), UndoOffer::Kind::ofSeveral);
            settings().applyPreset(preset);
            // Even if the same provider is selected again, since that restores its values.
            testResult = std::nullopt;
            return;
        }
    }
}

void SettingsState::runTestConnection() {
    isSuccess = false;
    if (m_needs.appState.isKeyAwaited() && settings().needsKey()) {
        testResult =
            u"API Key nằm trong kho khóa (keyring) của máy, chưa đọc được. "
            u"Hãy mở khóa kho rồi thử lại, hoặc nhập lại API Key."_s;
        m_needs.appState.unlockKey();
        return;
    }
    if (settings().wouldExposeKey()) {
        testResult = u"API Key chưa được gửi đi, vì địa chỉ máy chủ không mã hóa (http)."_s;
        return;
    }
    isTesting = true;
    testResult = std::nullopt;
    testConnection(m_test.get_token());
}

QCoro::Task<void> SettingsState::testConnection(std::stop_token stop) {
    const QPointer<SettingsState> self = this;  // the panel may be gone when the reply comes
    QString message;
    bool success = false;
    try {
        auto reply = m_needs.ai.testConnection(m_needs.settings.endpointSettings(), stop);
        message = co_await std::move(reply);
        success = true;
    } catch (const LocalizedError& error) {
        message = error.errorDescription();
    }
    if (!self)
        co_return;
    isSuccess = success;
    testResult = message;
    isTesting = false;
}

void SettingsState::restoreDefaults() {
    // A second press changes nothing, and must not replace the undo offer of the first.
    const bool isSecond = settings().areDefaults() && m_needs.undo.message();
    const auto before = settings().remembered();
    settings().resetToDefaults();
    if (!isSecond)
        m_needs.undo.make(u"Đã khôi phục cài đặt mặc định"_s, before);
    testResult = std::nullopt;
}

void SettingsState::resetPrompt() {
    settings().customPrompt = AppSettings::defaultPrompt;
}

void SettingsState::requestAccessibility() {
    m_needs.hotKeys.requestAccessibility();
}

void SettingsState::requestScreenCapture() {
    m_needs.hotKeys.requestScreenCapture();
}

void SettingsState::showOnboarding() {
    m_needs.appState.showOnboarding = true;
}

void SettingsState::openGuide() {
    m_needs.openGuide();
}

}  // namespace tralio
