#include "state/app_settings.h"

#include <QUrl>

#include <algorithm>

#include "engine/loopback.h"
#include "state/hot_key_registrar.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

// The display texts with which earlier versions stored their default hot keys; the key codes stored beside
// them are outdated.
constexpr QStringView legacyHotKeyDisplay = u"⌥ D";
constexpr QStringView legacyOcrHotKeyDisplay = u"⌥ S";

// The model that earlier versions stored for the default preset, which has another one now.
constexpr QStringView legacyModel = u"kavo/claude-sonnet-4.5";

QString originOf(const QUrl& address) {
    return address
        .adjusted(QUrl::RemovePath | QUrl::RemoveQuery | QUrl::RemoveFragment | QUrl::RemoveUserInfo)
        .toString();
}

}  // namespace

const QString AppSettings::defaultBaseURL = ProviderPreset::presets().front().baseURL;
const QString AppSettings::defaultModel = ProviderPreset::presets().front().defaultModel;
const QString AppSettings::defaultApiKey = u"sk-xyz-Q7mT2vLk9aRw4cNp8sHd3yFb6uJe1oZg5XiV0q"_s;
const QString AppSettings::defaultPrompt =
    u"Bạn là chuyên gia dịch thuật chuyên nghiệp. Nhiệm vụ của bạn là dịch văn bản được cung cấp sang ngôn "
    u"ngữ "
    u"đích một cách chính xác, đúng ngữ cảnh, tự nhiên và chuẩn văn phạm.\n"
    u"Chỉ trả về bản dịch hoàn chỉnh duy nhất, KHÔNG giải thích thêm, KHÔNG lặp lại câu hỏi."_s;
const QString AppSettings::defaultHotKeyDisplay = u"⌘ ⇧ D"_s;
const QString AppSettings::defaultOcrHotKeyDisplay = u"⌘ ⇧ S"_s;

AppSettings::AppSettings(KeyValueStore& store, HotKeyRegistrar& hotKeys, QObject* parent)
    : ObservableObject(parent),
      m_store(store),
      m_hotKeys(hotKeys),
      m_values(*this, store),
      m_hotKey(*this, store),
      m_ocrHotKey(*this, store),
      m_consent(*this, store) {
    load();
}

void AppSettings::load() {
    m_values.load();
    m_consent.load();
    if (selectedPresetId() == ProviderPreset::defaultId() && model() == legacyModel)
        model.load(defaultModel);
    loadHotKey(m_hotKey, hotKeyKeyCode, hotKeyModifiers, hotKeyDisplay, legacyHotKeyDisplay);
    loadHotKey(m_ocrHotKey, ocrHotKeyKeyCode, ocrHotKeyModifiers, ocrHotKeyDisplay, legacyOcrHotKeyDisplay);
}

void AppSettings::loadHotKey(PersistedGroup& hotKey, const Persisted<quint32>& keyCode,
    const Persisted<quint32>& modifiers, const Persisted<QString>& display, QStringView legacyDisplay) {
    // A hot key counts as stored only if its display text is; key codes without one are ignored.
    const auto storedDisplay = m_store.text(display.key());
    if (!storedDisplay || *storedDisplay == legacyDisplay)
        return;
    if (isInRange(m_store.integer(keyCode.key()).value_or(0)) &&
        isInRange(m_store.integer(modifiers.key()).value_or(0)))
        hotKey.load();
}

void AppSettings::applyPreset(const ProviderPreset& preset) {
    selectedPresetId = preset.id;
    if (ProviderPreset::isCustom(preset.id))
        return;
    baseURL = preset.baseURL;
    model = preset.defaultModel;
    if (ProviderPreset::bringsKey(preset.id))
        apiKey = defaultApiKey;
}

bool AppSettings::wouldLoseOwn(const ProviderPreset& preset) const {
    if (ProviderPreset::isCustom(preset.id))
        return false;
    const auto isOwn = [](const QString& value, QString ProviderPreset::*field) {
        const QList<ProviderPreset>& presets = ProviderPreset::presets();
        return !value.isEmpty() && std::none_of(presets.begin(), presets.end(), [&](const auto& known) {
            return known.*field == value;
        });
    };
    const bool hasOwnKey =
        m_store.isAwaited(apiKey.key()) || (!apiKey().isEmpty() && apiKey() != defaultApiKey);
    return isOwn(baseURL(), &ProviderPreset::baseURL) || isOwn(model(), &ProviderPreset::defaultModel) ||
        (hasOwnKey && ProviderPreset::bringsKey(preset.id));
}

void AppSettings::resetToDefaults() {
    m_values.reset();
    updateCustomHotKey(defaultHotKeyKeyCode, defaultHotKeyModifiers, defaultHotKeyDisplay);
    updateCustomOCRHotKey(defaultOcrHotKeyKeyCode, defaultOcrHotKeyModifiers, defaultOcrHotKeyDisplay);
}

bool AppSettings::areDefaults() const {
    return m_values.isReset() && m_hotKey.isReset() && m_ocrHotKey.isReset() &&
        !m_store.isAwaited(apiKey.key());
}

std::function<void()> AppSettings::remembered() {
    const bool isKeyAwaited = m_store.isAwaited(apiKey.key());
    return [this, isKeyAwaited, values = m_values.remembered(), hotKey = m_hotKey.remembered(),
               ocrHotKey = m_ocrHotKey.remembered()] {
        values();
        if (isKeyAwaited)
            m_store.awaitAgain(apiKey.key());
        hotKey();
        ocrHotKey();
        m_hotKeys.updateTextHotKey(hotKeyKeyCode(), hotKeyModifiers());
        m_hotKeys.updateOCRHotKey(ocrHotKeyKeyCode(), ocrHotKeyModifiers());
    };
}

std::function<void()> AppSettings::rememberedEndpoint() {
    return [this, isKeyAwaited = m_store.isAwaited(apiKey.key()), endpoint = endpointSettings()] {
        baseURL = endpoint.baseURL;
        model = endpoint.model;
        apiKey = endpoint.apiKey;
        if (isKeyAwaited)
            m_store.awaitAgain(apiKey.key());
        selectedPresetId = endpoint.selectedPresetId;
    };
}

void AppSettings::updateCustomHotKey(quint32 keyCode, quint32 modifiers, const QString& display) {
    hotKeyKeyCode = keyCode;
    hotKeyModifiers = modifiers;
    hotKeyDisplay = display;
    m_hotKeys.updateTextHotKey(keyCode, modifiers);
}

void AppSettings::updateCustomOCRHotKey(quint32 keyCode, quint32 modifiers, const QString& display) {
    ocrHotKeyKeyCode = keyCode;
    ocrHotKeyModifiers = modifiers;
    ocrHotKeyDisplay = display;
    m_hotKeys.updateOCRHotKey(keyCode, modifiers);
}

void AppSettings::reloadApiKey() {
    Q_EMIT objectWillChange();
    apiKey.load(read(m_store, apiKey.key(), defaultApiKey));
}

bool AppSettings::wouldExposeKey() const {
    const QUrl address(baseURL().trimmed());
    const QString key = apiKey().trimmed();
    // The built-in key needs no protection: it is in every copy of the program.
    return address.scheme() == u"http"_s && !isLoopback(address.host().toStdString()) && !key.isEmpty() &&
        key != defaultApiKey && clearTextOrigin() != originOf(address);
}

void AppSettings::acceptExposure() {
    clearTextOrigin = originOf(QUrl(baseURL().trimmed()));
}

EndpointSettings AppSettings::endpointSettings() const {
    return {.baseURL = baseURL(),
        .selectedPresetId = selectedPresetId(),
        .apiKey = apiKey(),
        .model = model(),
        .customPrompt = customPrompt()};
}

}  // namespace tralio
