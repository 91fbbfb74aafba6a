#include "state/app_settings.h"

#include <array>

#include "engine/provider_preset.h"
#include "state/hot_key_registrar.h"
#include "support/memory_key_value_store.h"

namespace tralio {
namespace {

using Values = std::map<QString, StoredValue>;

const ProviderPreset& preset(QStringView id) {
    const auto& presets = ProviderPreset::presets();
    return *std::find_if(presets.begin(), presets.end(), [&](const auto& preset) { return preset.id == id; });
}

/// A store and a registrar that note in one list what happens, in order.
struct Journal final : MemoryKeyValueStore, HotKeyRegistrar {
    using MemoryKeyValueStore::MemoryKeyValueStore;

    void setValue(const QString& key, StoredValue value) override {
        entries += key.mid(u"app_setting_"_s.size());
        MemoryKeyValueStore::setValue(key, std::move(value));
    }
    void updateTextHotKey(quint32 keyCode, quint32 modifiers) override {
        entries += u"register text %1 %2"_s.arg(keyCode).arg(modifiers);
    }
    void updateOCRHotKey(quint32 keyCode, quint32 modifiers) override {
        entries += u"register ocr %1 %2"_s.arg(keyCode).arg(modifiers);
    }

    QStringList entries;
};

/// Key code, modifiers and display.
using HotKey = std::tuple<quint32, quint32, QString>;

const HotKey defaultTextHotKey{2, 768, u"⌘ ⇧ D"_s};
const HotKey defaultOcrHotKey{1, 768, u"⌘ ⇧ S"_s};

HotKey textHotKey(const AppSettings& settings) {
    return {settings.hotKeyKeyCode(), settings.hotKeyModifiers(), settings.hotKeyDisplay()};
}

HotKey ocrHotKey(const AppSettings& settings) {
    return {settings.ocrHotKeyKeyCode(), settings.ocrHotKeyModifiers(), settings.ocrHotKeyDisplay()};
}

struct AppSettingsTest : testing::Test {
    Journal journal;
    AppSettings settings{journal, journal};
};

TEST_F(AppSettingsTest, everything_that_was_assigned_is_there_when_constructed_anew) {
    settings.baseURL = u" http://localhost:1 "_s;  // as it was typed, blanks included
    settings.apiKey = u""_s;
    settings.model = u"m"_s;
    settings.customPrompt = u"p\n"_s;
    settings.tone = TranslationTone::concise;
    settings.autoPaste = false;
    settings.selectedPresetId = u"custom"_s;
    settings.updateCustomHotKey(4294967295U, 4294967295U, u"⌃ X"_s);
    settings.updateCustomOCRHotKey(0, 0, u"F5"_s);
    journal.entries.clear();

    const AppSettings again(journal, journal);
    EXPECT_EQ(again.endpointSettings(), settings.endpointSettings());
    EXPECT_EQ(again.baseURL(), u" http://localhost:1 "_s);
    EXPECT_EQ(again.tone(), TranslationTone::concise);
    EXPECT_FALSE(again.autoPaste());
    EXPECT_EQ(textHotKey(again), (HotKey{4294967295U, 4294967295U, u"⌃ X"_s}));
    EXPECT_EQ(ocrHotKey(again), (HotKey{0, 0, u"F5"_s}));
    EXPECT_TRUE(journal.entries.isEmpty());
    EXPECT_EQ(journal.values.at(u"app_setting_tone"_s), StoredValue(u"Ngắn gọn"_s));
}

/// What a store holds of a hot key: key code, modifiers and display.
using StoredHotKey = std::array<std::optional<StoredValue>, 3>;

/// The hot keys that are loaded where these are stored.
std::pair<HotKey, HotKey> load(const StoredHotKey& text, const StoredHotKey& ocr) {
    Journal journal;
    for (const auto& [prefix, stored] : {std::pair(u"hotkey_"_s, text), std::pair(u"ocr_hotkey_"_s, ocr)})
        for (const auto& [name, value] : {std::pair(u"keycode"_s, stored[0]),
                 std::pair(u"modifiers"_s, stored[1]), std::pair(u"display"_s, stored[2])})
            if (value)
                journal.values.insert_or_assign(u"app_setting_"_s + prefix + name, *value);
    const AppSettings settings(journal, journal);
    return {textHotKey(settings), ocrHotKey(settings)};
}

TEST_F(AppSettingsTest, a_hot_key_is_loaded_only_with_its_display_and_with_codes_it_can_have) {
    const StoredValue code(qint64{14});
    const StoredValue modifiers(qint64{2048});
    const StoredValue display(u"⌃ X"_s);
    const HotKey none{0, 0, u"⌃ X"_s};
    // Where nothing is loaded, the defaults stand.
    const std::tuple<const char*, StoredHotKey, std::optional<HotKey>> cases[] = {
        {"all stored", {code, modifiers, display}, HotKey{14, 2048, u"⌃ X"_s}},
        {"no codes", {std::nullopt, std::nullopt, display}, none},
        {"codes of another type", {u"14"_s, QByteArray("14"), display}, none},
        {"codes that are truths", {true, false, display}, HotKey{1, 0, u"⌃ X"_s}},
        {"no display", {code, modifiers, {}}, {}},
        {"a display of another type", {code, modifiers, qint64{7}}, {}},
        {"a negative key code", {qint64{-1}, modifiers, display}, {}},
        {"modifiers one too large", {code, qint64{4294967296}, display}, {}},
    };
    for (const auto& [what, stored, loaded] : cases) {
        EXPECT_EQ(load(stored, {}), std::pair(loaded.value_or(defaultTextHotKey), defaultOcrHotKey)) << what;
        EXPECT_EQ(load({}, stored), std::pair(defaultTextHotKey, loaded.value_or(defaultOcrHotKey))) << what;
    }

    // What earlier versions stored brings the default back, but only in its own place.
    const StoredHotKey legacyText{code, modifiers, u"⌥ D"_s};
    const StoredHotKey legacyOcr{code, modifiers, u"⌥ S"_s};
    EXPECT_EQ(load(legacyText, legacyOcr), std::pair(defaultTextHotKey, defaultOcrHotKey));
    EXPECT_EQ(load(legacyOcr, legacyText), std::pair(HotKey{14, 2048, u"⌥ S"_s}, HotKey{14, 2048, u"⌥ D"_s}));
}

TEST_F(AppSettingsTest, the_model_of_an_earlier_version_is_corrected_for_the_default_preset_only) {
    const auto loadedModel = [](const QString& model, Values values) {
        values.insert_or_assign(u"app_setting_model"_s, model);
        Journal journal(values);
        const AppSettings settings(journal, journal);
        EXPECT_EQ(journal.values, values) << "what is stored stays";
        return settings.model();
    };
    const QString preset = u"app_setting_preset_id"_s;
    const QString legacy = u"kavo/claude-sonnet-4.5"_s;
    EXPECT_EQ(loadedModel(legacy, {}), AppSettings::defaultModel);
    EXPECT_EQ(loadedModel(legacy, {{preset, u"kavo"_s}}), AppSettings::defaultModel);
    EXPECT_EQ(loadedModel(legacy, {{preset, u"kavo_sonnet"_s}}), legacy);
    EXPECT_EQ(loadedModel(u"other"_s, {{preset, u"kavo"_s}}), u"other"_s);
}

TEST_F(AppSettingsTest, what_is_not_stored_or_cannot_be_understood_loads_as_the_default) {
    const Values unreadable{{u"app_setting_base_url"_s, qint64{1}},
        {u"app_setting_api_key"_s, QByteArray("key")}, {u"app_setting_model"_s, true},
        {u"app_setting_preset_id"_s, qint64{0}}, {u"app_setting_custom_prompt"_s, QByteArray()},
        {u"app_setting_tone"_s, u"tự nhiên"_s}};
    for (const Values& values : {Values(), unreadable}) {
        Journal journal(values);
        const AppSettings settings(journal, journal);
        EXPECT_EQ(settings.endpointSettings(),
            (EndpointSettings{.baseURL = AppSettings::defaultBaseURL,
                .selectedPresetId = u"kavo"_s,
                .apiKey = AppSettings::defaultApiKey,
                .model = AppSettings::defaultModel,
                .customPrompt = AppSettings::defaultPrompt}));
        EXPECT_EQ(settings.tone(), TranslationTone::natural);
        EXPECT_TRUE(settings.autoPaste());
        EXPECT_TRUE(journal.entries.isEmpty());
    }

    // Anything stored counts as an answer here, and only a true one lets the clipboard be read.
    const auto pastes = [](const StoredValue& stored) {
        Journal journal(Values{{u"app_setting_auto_paste"_s, stored}});
        return AppSettings(journal, journal).autoPaste();
    };
    EXPECT_TRUE(pastes(true));
    EXPECT_TRUE(pastes(qint64{2}));
    for (const StoredValue& other :
        {StoredValue(false), StoredValue(qint64{0}), StoredValue(u"true"_s), StoredValue(QByteArray("1"))})
        EXPECT_FALSE(pastes(other)) << other.index();
}

TEST_F(AppSettingsTest, observers_are_told_before_the_change_and_the_store_learns_of_it_after) {
    QObject::connect(&settings, &ObservableObject::objectWillChange, &settings,
        [&] { journal.entries += u"will change "_s + settings.model(); });
    settings.model = u"a"_s;
    settings.model = u"a"_s;
    settings.autoPaste = false;
    EXPECT_EQ(journal.entries,
        QStringList({u"will change "_s + AppSettings::defaultModel, u"model"_s, u"will change a"_s,
            u"model"_s, u"will change a"_s, u"auto_paste"_s}));
}

TEST_F(AppSettingsTest, a_preset_brings_its_endpoint_along) {
    const std::pair<QStringView, QStringList> cases[] = {
        {u"openai", {u"preset_id"_s, u"base_url"_s, u"model"_s}},
        {u"kavo_sonnet", {u"preset_id"_s, u"base_url"_s, u"model"_s, u"api_key"_s}},
        {u"custom", {u"preset_id"_s}},
    };
    for (const auto& [id, writes] : cases) {
        settings.baseURL = u"u"_s;
        settings.model = u"m"_s;
        settings.apiKey = u"mine"_s;
        journal.entries.clear();
        settings.applyPreset(preset(id));
        EXPECT_EQ(journal.entries, writes) << id.toUtf8().constData();
        EXPECT_EQ(settings.selectedPresetId(), id);
        EXPECT_EQ(settings.apiKey(), id == u"kavo_sonnet" ? AppSettings::defaultApiKey : u"mine"_s);
        EXPECT_EQ(settings.baseURL(), id == u"custom" ? u"u"_s : preset(id).baseURL);
        EXPECT_EQ(settings.model(), id == u"custom" ? u"m"_s : preset(id).defaultModel);
    }
}

TEST_F(AppSettingsTest, a_reset_restores_and_registers_in_order_and_leaves_auto_paste_alone) {
    settings.applyPreset(preset(u"groq"));
    settings.tone = TranslationTone::formal;
    settings.autoPaste = false;
    settings.updateCustomHotKey(14, 2048, u"⌥ E"_s);
    settings.updateCustomOCRHotKey(15, 4096, u"⌃ R"_s);
    EXPECT_EQ(journal.entries.last(), u"register ocr 15 4096"_s);
    journal.entries.clear();
    const EndpointSettings chosen = settings.endpointSettings();
    const auto bringBack = settings.remembered();

    settings.resetToDefaults();
    EXPECT_EQ(journal.entries,
        QStringList({u"base_url"_s, u"model"_s, u"api_key"_s, u"custom_prompt"_s, u"preset_id"_s, u"tone"_s,
            u"hotkey_keycode"_s, u"hotkey_modifiers"_s, u"hotkey_display"_s, u"register text 2 768"_s,
            u"ocr_hotkey_keycode"_s, u"ocr_hotkey_modifiers"_s, u"ocr_hotkey_display"_s,
            u"register ocr 1 768"_s}));
    EXPECT_FALSE(settings.autoPaste());
    EXPECT_EQ(settings.tone(), TranslationTone::natural);
    EXPECT_EQ(settings.baseURL(), AppSettings::defaultBaseURL);
    EXPECT_EQ(textHotKey(settings), defaultTextHotKey);
    EXPECT_EQ(ocrHotKey(settings), defaultOcrHotKey);

    settings.autoPaste = true;
    bringBack();
    EXPECT_TRUE(settings.autoPaste());
    EXPECT_EQ(settings.endpointSettings(), chosen);
    EXPECT_EQ(settings.tone(), TranslationTone::formal);
    EXPECT_EQ(settings.ocrHotKeyDisplay(), u"⌃ R"_s);
    EXPECT_EQ(journal.entries.mid(journal.entries.size() - 2),
        QStringList({u"register text 14 2048"_s, u"register ocr 15 4096"_s}));
}

TEST_F(AppSettingsTest, a_key_of_the_users_over_plain_http_wants_consent_once_for_each_server) {
    settings.apiKey = u"sk-mine"_s;
    for (const QString& safe : {u"https://ai.example.com/v1"_s, u"http://localhost:11434/v1"_s,
             u"http://127.0.0.1/v1"_s, u"http://[::1]:80"_s, u"http://[::ffff:127.0.0.1]"_s,
             u"http://LocalHost/v1"_s, u"http://ai.localhost"_s, u"no address"_s}) {
        settings.baseURL = safe;
        EXPECT_FALSE(settings.wouldExposeKey()) << safe.toStdString();
    }
    for (const QString& bare :
        {u" http://ai.example.com/v1"_s, u"HTTP://192.168.0.2:8080/v1"_s, u"http://127.0.0.1.example.com"_s,
            u"http://127.0.0.x1"_s, u"http://localhost.example.com"_s, u"http://localhost./v1"_s}) {
        settings.baseURL = bare;
        EXPECT_TRUE(settings.wouldExposeKey()) << bare.toStdString();
    }
    settings.baseURL = u"http://ai.example.com/v1"_s;
    settings.acceptExposure();
    settings.resetToDefaults();
    AppSettings next(journal, journal);
    next.apiKey = u"sk-other"_s;
    next.baseURL = u"http://ai.example.com/v2/"_s;
    EXPECT_FALSE(next.wouldExposeKey());
    next.baseURL = u"http://ai.example.com:81/v1"_s;
    EXPECT_TRUE(next.wouldExposeKey());
    next.apiKey = AppSettings::defaultApiKey;
    EXPECT_FALSE(next.wouldExposeKey()) << "no secret";
}

}  // namespace
}  // namespace tralio
