#pragma once

#include <QString>

#include "common/observable_object.h"
#include "engine/endpoint_settings.h"
#include "engine/provider_preset.h"
#include "engine/translation_tone.h"
#include "state/persisted.h"

namespace tralio {

class HotKeyRegistrar;

/// The user's settings: loaded once, at construction, and written through at every assignment.
///
/// An ordinary object of which there may be several: another instance sees a change only when it is
/// constructed anew. Values are trimmed and checked not here, but where they are used. Used from the main
/// thread; work on other threads takes a copy, `endpointSettings()`.
class AppSettings final : public ObservableObject {
    Q_OBJECT

    KeyValueStore& m_store;
    HotKeyRegistrar& m_hotKeys;
    PersistedGroup m_values;
    PersistedGroup m_hotKey;
    PersistedGroup m_ocrHotKey;
    PersistedGroup m_consent;

public:
    static const QString defaultBaseURL;
    static const QString defaultModel;
    static const QString defaultApiKey;
    static const QString defaultPrompt;
    /// The name under which the API key is stored.
    static constexpr QStringView apiKeyKey = u"app_setting_api_key";
    static constexpr quint32 defaultHotKeyKeyCode = 2;      ///< the D key
    static constexpr quint32 defaultHotKeyModifiers = 768;  ///< command 256 and shift 512
    static const QString defaultHotKeyDisplay;
    static constexpr quint32 defaultOcrHotKeyKeyCode = 1;  ///< the S key
    static constexpr quint32 defaultOcrHotKeyModifiers = 768;
    static const QString defaultOcrHotKeyDisplay;

    /// Neither the store nor the registrar is owned; both must outlive the settings.
    AppSettings(KeyValueStore& store, HotKeyRegistrar& hotKeys, QObject* parent = nullptr);

    // In the order in which a reset assigns them.
    // clang-format off
    Persisted<QString>         baseURL           {m_values, u"app_setting_base_url",      defaultBaseURL};
    Persisted<QString>         model             {m_values, u"app_setting_model",         defaultModel};
    Persisted<QString>         apiKey            {m_values, apiKeyKey,                    defaultApiKey};
    Persisted<QString>         customPrompt      {m_values, u"app_setting_custom_prompt", defaultPrompt};
    Persisted<QString>         selectedPresetId  {m_values, u"app_setting_preset_id",     ProviderPreset::defaultId()};
    Persisted<TranslationTone> tone              {m_values, u"app_setting_tone",          TranslationTone::natural};
    Persisted<bool>            autoPaste         {m_values, u"app_setting_auto_paste",    true, OnReset::stays};
    // The hot keys as they were registered, each with its display text. Assigning here does not register
    // anything; `updateCustomHotKey` and `updateCustomOCRHotKey` do.
    Persisted<quint32>         hotKeyKeyCode     {m_hotKey,    u"app_setting_hotkey_keycode",       defaultHotKeyKeyCode};
    Persisted<quint32>         hotKeyModifiers   {m_hotKey,    u"app_setting_hotkey_modifiers",     defaultHotKeyModifiers};
    Persisted<QString>         hotKeyDisplay     {m_hotKey,    u"app_setting_hotkey_display",       defaultHotKeyDisplay};
    Persisted<quint32>         ocrHotKeyKeyCode  {m_ocrHotKey, u"app_setting_ocr_hotkey_keycode",   defaultOcrHotKeyKeyCode};
    Persisted<quint32>         ocrHotKeyModifiers{m_ocrHotKey, u"app_setting_ocr_hotkey_modifiers", defaultOcrHotKeyModifiers};
    Persisted<QString>         ocrHotKeyDisplay  {m_ocrHotKey, u"app_setting_ocr_hotkey_display",   defaultOcrHotKeyDisplay};
    // The origin to which the user allows the key to be sent unencrypted. Not changed by a reset.
    Persisted<QString>         clearTextOrigin   {m_consent,   u"app_setting_clear_text_origin",    QString()};
    // clang-format on

    /// Selects the preset and copies its endpoint and model. The maker's own presets also set the built-in
    /// key; for the others the user types one. The custom preset leaves all three unchanged.
    void applyPreset(const ProviderPreset& preset);

    /// Whether a preset would overwrite what only the user knows: an address, a model or a key.
    [[nodiscard]] bool wouldLoseOwn(const ProviderPreset& preset) const;

    /// Resets everything to its default except `autoPaste`, and registers both hot keys anew.
    void resetToDefaults();

    /// Whether a reset would change nothing.
    [[nodiscard]] bool areDefaults() const;

    /// A function that restores what a reset changes to its present values. The settings must outlive it.
    [[nodiscard]] std::function<void()> remembered();
    /// The same of what `applyPreset` changes.
    [[nodiscard]] std::function<void()> rememberedEndpoint();

    /// Stores a hot key and registers it. Virtual key code and modifier mask are explained in
    /// `HotKeyService`.
    void updateCustomHotKey(quint32 keyCode, quint32 modifiers, const QString& display);
    void updateCustomOCRHotKey(quint32 keyCode, quint32 modifiers, const QString& display);

    /// Reads the stored key again, which has arrived after these settings were loaded.
    void reloadApiKey();

    /// Whether the selected server requires a key.
    [[nodiscard]] bool needsKey() const { return ProviderPreset::needsKey(selectedPresetId()); }

    /// Whether the user's own key would be sent over a network unencrypted without the user's consent.
    [[nodiscard]] bool wouldExposeKey() const;
    /// Stores the user's consent to that for the present server.
    void acceptExposure();

    /// The settings that the translation client needs, as a copy that may be used on another thread.
    [[nodiscard]] EndpointSettings endpointSettings() const;

private:
    void load();
    void loadHotKey(PersistedGroup& hotKey, const Persisted<quint32>& keyCode,
        const Persisted<quint32>& modifiers, const Persisted<QString>& display, QStringView legacyDisplay);
};

}  // namespace tralio
