#include "state/app_settings.h"

#include <limits>
#include <optional>

#include "engine/provider_preset.h"
#include "state/hot_key_registrar.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

// Displays under which earlier versions stored their default hot keys, with codes that no longer hold.
constexpr QStringView legacyHotKeyDisplay = u"⌥ D";
constexpr QStringView legacyOcrHotKeyDisplay = u"⌥ S";

// The model that earlier versions stored for the default preset; that preset now has another one.
constexpr QStringView legacyModel = u"kavo/claude-sonnet-4.5";

/// A hot-key number as it was stored: 0 when there is none, nothing when no hot key can have it.
std::optional<quint32> hotKeyNumber(const KeyValueStore& store, const QString& key) {
    const qint64 number = store.integer(key).value_or(0);
    if (number < 0 || number > std::numeric_limits<quint32>::max())
        return std::nullopt;
    return static_cast<quint32>(number);
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
const QString AppSettings::defaultPresetId = u"kavo"_s;
const QString AppSettings::defaultHotKeyDisplay = u"⌘ ⇧ D"_s;
const QString AppSettings::defaultOcrHotKeyDisplay = u"⌘ ⇧ S"_s;

AppSettings::AppSettings(KeyValueStore& store, HotKeyRegistrar& hotKeys, QObject* parent)
    : ObservableObject(parent), m_store(store), m_hotKeys(hotKeys) {
    load();
}

void AppSettings::load() {
    loadText(baseURL);
    loadText(apiKey);
    loadText(selectedPresetId);
    loadText(model);
    if (selectedPresetId() == defaultPresetId && model() == legacyModel)
        model.load(defaultModel);
    loadText(customPrompt);
    if (const auto stored = m_store.text(tone.key()))
        tone.load(TranslationTone::fromRawValue(*stored).value_or(TranslationTone::natural));
    // A value that is no boolean was not put there by us; then the clipboard is left alone.
    if (m_store.value(autoPaste.key()))
        autoPaste.load(m_store.boolean(autoPaste.key()).value_or(false));
    loadHotKey(hotKeyKeyCode, hotKeyModifiers, hotKeyDisplay, legacyHotKeyDisplay);
    loadHotKey(ocrHotKeyKeyCode, ocrHotKeyModifiers, ocrHotKeyDisplay, legacyOcrHotKeyDisplay);
}

void AppSettings::loadText(Persisted<QString>& property) {
    if (auto stored = m_store.text(property.key()))
        property.load(*std::move(stored));
}

void AppSettings::loadHotKey(Persisted<quint32>& keyCode, Persisted<quint32>& modifiers,
    Persisted<QString>& display, QStringView legacyDisplay) {
    // The display tells whether a hot key was stored at all; codes without one are not looked at.
    const auto storedDisplay = m_store.text(display.key());
    if (!storedDisplay || *storedDisplay == legacyDisplay)
        return;
    const auto storedKeyCode = hotKeyNumber(m_store, keyCode.key());
    const auto storedModifiers = hotKeyNumber(m_store, modifiers.key());
    if (!storedKeyCode || !storedModifiers)
        return;
    keyCode.load(*storedKeyCode);
    modifiers.load(*storedModifiers);
    display.load(*storedDisplay);
}

void AppSettings::applyPreset(const ProviderPreset& preset) {
    selectedPresetId = preset.id;
    if (preset.id == u"custom")
        return;
    baseURL = preset.baseURL;
    model = preset.defaultModel;
    if (preset.id.startsWith(u"kavo"))
        apiKey = defaultApiKey;
}

void AppSettings::resetToDefaults() {
    baseURL = defaultBaseURL;
    model = defaultModel;
    apiKey = defaultApiKey;
    customPrompt = defaultPrompt;
    selectedPresetId = defaultPresetId;
    tone = TranslationTone::natural;
    updateCustomHotKey(defaultHotKeyKeyCode, defaultHotKeyModifiers, defaultHotKeyDisplay);
    updateCustomOCRHotKey(defaultOcrHotKeyKeyCode, defaultOcrHotKeyModifiers, defaultOcrHotKeyDisplay);
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

EndpointSettings AppSettings::endpointSettings() const {
    return {.baseURL = baseURL(),
        .selectedPresetId = selectedPresetId(),
        .apiKey = apiKey(),
        .model = model(),
        .customPrompt = customPrompt()};
}

}  // namespace tralio
