#include "state/app_settings.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

#include "engine/provider_preset.h"
#include "state/hot_key_registrar.h"
#include "support/memory_key_value_store.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;
using Values = std::map<QString, StoredValue>;

const ProviderPreset& preset(QStringView id) {
    const auto& presets = ProviderPreset::presets();
    return *std::find_if(presets.begin(), presets.end(), [&](const auto& preset) { return preset.id == id; });
}

/// A store and a registrar that note in one list what happens, in order.
class Journal final : public MemoryKeyValueStore, public HotKeyRegistrar {
public:
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

struct HotKey {
    quint32 keyCode;
    quint32 modifiers;
    QString display;
    bool operator==(const HotKey&) const = default;
};

const HotKey defaultTextHotKey{2, 768, u"⌘ ⇧ D"_s};
const HotKey defaultOcrHotKey{1, 768, u"⌘ ⇧ S"_s};

HotKey textHotKey(const AppSettings& settings) {
    return {settings.hotKeyKeyCode(), settings.hotKeyModifiers(), settings.hotKeyDisplay()};
}

HotKey ocrHotKey(const AppSettings& settings) {
    return {settings.ocrHotKeyKeyCode(), settings.ocrHotKeyModifiers(), settings.ocrHotKeyDisplay()};
}

TEST(AppSettingsTest, a_fresh_store_gives_the_defaults_and_stays_empty) {
    Journal journal;
    const AppSettings settings(journal, journal);
    EXPECT_EQ(settings.baseURL(), preset(u"kavo").baseURL);
    EXPECT_EQ(settings.model(), preset(u"kavo").defaultModel);
    EXPECT_EQ(settings.selectedPresetId(), preset(u"kavo").id);
    EXPECT_EQ(settings.apiKey().size(), 45);
    EXPECT_EQ(settings.customPrompt().toUtf8().size(), 343);
    EXPECT_EQ(settings.tone(), TranslationTone::natural);
    EXPECT_TRUE(settings.autoPaste());
    EXPECT_EQ(textHotKey(settings), defaultTextHotKey);
    EXPECT_EQ(ocrHotKey(settings), defaultOcrHotKey);
    EXPECT_TRUE(journal.entries.isEmpty());
}

TEST(AppSettingsTest, everything_that_was_assigned_is_there_when_constructed_anew) {
    Journal journal;
    AppSettings settings(journal, journal);
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
    EXPECT_EQ(again.endpointSettings(), (EndpointSettings{.baseURL = u" http://localhost:1 "_s,
                                                          .selectedPresetId = u"custom"_s,
                                                          .apiKey = u""_s,
                                                          .model = u"m"_s,
                                                          .customPrompt = u"p\n"_s}));
    EXPECT_EQ(again.tone(), TranslationTone::concise);
    EXPECT_FALSE(again.autoPaste());
    EXPECT_EQ(textHotKey(again), (HotKey{4294967295U, 4294967295U, u"⌃ X"_s}));
    EXPECT_EQ(ocrHotKey(again), (HotKey{0, 0, u"F5"_s}));
    EXPECT_TRUE(journal.entries.isEmpty());
    // The types matter to whoever reads the store next.
    EXPECT_EQ(journal.values.at(u"app_setting_tone"_s), StoredValue(u"Ngắn gọn"_s));
    EXPECT_EQ(journal.values.at(u"app_setting_auto_paste"_s), StoredValue(false));
    EXPECT_EQ(journal.values.at(u"app_setting_hotkey_keycode"_s), StoredValue(qint64{4294967295}));
}

TEST(AppSettingsTest, two_instances_do_not_follow_each_other) {
    Journal journal;
    AppSettings one(journal, journal);
    const AppSettings other(journal, journal);
    one.model = u"changed"_s;
    EXPECT_EQ(other.model(), AppSettings::defaultModel);
    EXPECT_EQ(AppSettings(journal, journal).model(), u"changed"_s);
}

TEST(AppSettingsTest, a_hot_key_is_loaded_only_with_its_display_and_with_codes_it_can_have) {
    struct Case {
        const char* what;
        std::optional<StoredValue> keyCode, modifiers, display;
        std::optional<HotKey> loaded;  // nothing: the defaults
    };
    const auto number = [](qint64 number) { return StoredValue(number); };
    const StoredValue display(u"⌃ X"_s);
    const HotKey none{0, 0, u"⌃ X"_s};
    const Case cases[] = {
        {"all stored", number(14), number(2048), display, HotKey{14, 2048, u"⌃ X"_s}},
        {"the largest numbers", number(4294967295), number(4294967295), display,
         HotKey{4294967295U, 4294967295U, u"⌃ X"_s}},
        {"no codes", {}, {}, display, none},
        {"codes of another type", StoredValue(u"14"_s), StoredValue(QByteArray("14")), display, none},
        {"no display", number(14), number(2048), {}, {}},
        {"a display of another type", number(14), number(2048), number(7), {}},
        {"an empty display", number(14), number(2048), StoredValue(u""_s), HotKey{14, 2048, u""_s}},
        {"a negative key code", number(-1), number(2048), display, {}},
        {"modifiers one too large", number(14), number(4294967296), display, {}},
    };
    for (const Case& c : cases) {
        for (const QString& prefix : {u"app_setting_hotkey_"_s, u"app_setting_ocr_hotkey_"_s}) {
            Journal journal;
            const auto put = [&](const QString& name, const std::optional<StoredValue>& value) {
                if (value)
                    journal.values.insert_or_assign(prefix + name, *value);
            };
            put(u"keycode"_s, c.keyCode);
            put(u"modifiers"_s, c.modifiers);
            put(u"display"_s, c.display);
            const AppSettings settings(journal, journal);
            const bool isText = prefix == u"app_setting_hotkey_";
            EXPECT_EQ(textHotKey(settings), isText ? c.loaded.value_or(defaultTextHotKey) : defaultTextHotKey)
                << c.what;
            EXPECT_EQ(ocrHotKey(settings), isText ? defaultOcrHotKey : c.loaded.value_or(defaultOcrHotKey))
                << c.what;
        }
    }
}

TEST(AppSettingsTest, a_legacy_display_brings_the_default_hot_key_back_but_only_in_its_own_place) {
    const auto load = [](const QString& textDisplay, const QString& ocrDisplay) {
        Journal journal(Values{{u"app_setting_hotkey_keycode"_s, qint64{14}},
                               {u"app_setting_hotkey_modifiers"_s, qint64{2048}},
                               {u"app_setting_hotkey_display"_s, textDisplay},
                               {u"app_setting_ocr_hotkey_keycode"_s, qint64{15}},
                               {u"app_setting_ocr_hotkey_modifiers"_s, qint64{4096}},
                               {u"app_setting_ocr_hotkey_display"_s, ocrDisplay}});
        const AppSettings settings(journal, journal);
        return std::pair(textHotKey(settings), ocrHotKey(settings));
    };
    EXPECT_EQ(load(u"⌥ D"_s, u"⌥ S"_s), std::pair(defaultTextHotKey, defaultOcrHotKey));
    EXPECT_EQ(load(u"⌥ S"_s, u"⌥ D"_s), std::pair(HotKey{14, 2048, u"⌥ S"_s}, HotKey{15, 4096, u"⌥ D"_s}));
    EXPECT_EQ(load(u"⌥ D "_s, u"⌥S"_s), std::pair(HotKey{14, 2048, u"⌥ D "_s}, HotKey{15, 4096, u"⌥S"_s}));
}

TEST(AppSettingsTest, the_model_of_an_earlier_version_is_corrected_for_the_default_preset_only) {
    struct Case {
        std::optional<QString> presetId;
        QString model;
        QString loaded;
    };
    const QString legacy = u"kavo/claude-sonnet-4.5"_s;
    const Case cases[] = {
        {u"kavo"_s, legacy, AppSettings::defaultModel},
        {std::nullopt, legacy, AppSettings::defaultModel},
        {u"kavo_sonnet"_s, legacy, legacy},
        {u"custom"_s, legacy, legacy},
        {u"kavo"_s, u"other"_s, u"other"_s},
        {u"kavo"_s, u""_s, u""_s},
    };
    for (const Case& c : cases) {
        Journal journal(Values{{u"app_setting_model"_s, c.model}});
        if (c.presetId)
            journal.values.insert_or_assign(u"app_setting_preset_id"_s, *c.presetId);
        EXPECT_EQ(AppSettings(journal, journal).model(), c.loaded)
            << c.presetId.value_or(u"none"_s).toStdString();
        EXPECT_EQ(journal.values.at(u"app_setting_model"_s), StoredValue(c.model));
    }
}

TEST(AppSettingsTest, what_cannot_be_understood_loads_as_the_default) {
    Journal journal(Values{{u"app_setting_base_url"_s, qint64{1}},
                           {u"app_setting_api_key"_s, QByteArray("key")},
                           {u"app_setting_model"_s, true},
                           {u"app_setting_preset_id"_s, qint64{0}},
                           {u"app_setting_custom_prompt"_s, QByteArray()},
                           {u"app_setting_tone"_s, u"tự nhiên"_s}});
    const AppSettings settings(journal, journal);
    EXPECT_EQ(settings.endpointSettings(), (EndpointSettings{.baseURL = AppSettings::defaultBaseURL,
                                                             .selectedPresetId = u"kavo"_s,
                                                             .apiKey = AppSettings::defaultApiKey,
                                                             .model = AppSettings::defaultModel,
                                                             .customPrompt = AppSettings::defaultPrompt}));
    EXPECT_EQ(settings.tone(), TranslationTone::natural);

    // Anything stored counts as an answer here, and only a true one lets the clipboard be read.
    const std::pair<StoredValue, bool> autoPastes[] = {
        {false, false},    {true, true},       {qint64{0}, false},
        {qint64{2}, true}, {u"true"_s, false}, {QByteArray("1"), false},
    };
    for (const auto& [stored, loaded] : autoPastes) {
        Journal other(Values{{u"app_setting_auto_paste"_s, stored}});
        EXPECT_EQ(AppSettings(other, other).autoPaste(), loaded) << stored.index();
    }
}

TEST(AppSettingsTest, observers_are_told_before_the_change_and_the_store_learns_of_it_after) {
    Journal journal;
    AppSettings settings(journal, journal);
    QObject::connect(&settings, &ObservableObject::objectWillChange, &settings,
                     [&] { journal.entries += u"will change "_s + settings.model(); });
    settings.model = u"a"_s;
    settings.model = u"a"_s;
    settings.autoPaste = false;
    EXPECT_EQ(journal.entries,
              QStringList({u"will change "_s + AppSettings::defaultModel, u"model"_s, u"will change a"_s,
                           u"model"_s, u"will change a"_s, u"auto_paste"_s}));
}

TEST(AppSettingsTest, a_preset_brings_its_endpoint_along) {
    struct Case {
        QStringView id;
        QStringList writes;
        bool builtInKey;
    };
    const Case cases[] = {
        {u"openai", {u"preset_id"_s, u"base_url"_s, u"model"_s}, false},
        {u"kavo_sonnet", {u"preset_id"_s, u"base_url"_s, u"model"_s, u"api_key"_s}, true},
        {u"kavo", {u"preset_id"_s, u"base_url"_s, u"model"_s, u"api_key"_s}, true},
        {u"custom", {u"preset_id"_s}, false},
    };
    for (const Case& c : cases) {
        Journal journal;
        AppSettings settings(journal, journal);
        settings.baseURL = u"u"_s;
        settings.model = u"m"_s;
        settings.apiKey = u"mine"_s;
        journal.entries.clear();
        settings.applyPreset(preset(c.id));
        EXPECT_EQ(journal.entries, c.writes) << c.id.toUtf8().constData();
        EXPECT_EQ(settings.selectedPresetId(), c.id);
        EXPECT_EQ(settings.apiKey(), c.builtInKey ? AppSettings::defaultApiKey : u"mine"_s);
        EXPECT_EQ(settings.baseURL(), c.id == u"custom" ? u"u"_s : preset(c.id).baseURL);
        EXPECT_EQ(settings.model(), c.id == u"custom" ? u"m"_s : preset(c.id).defaultModel);
    }
}

TEST(AppSettingsTest, a_reset_restores_and_registers_in_order_and_leaves_auto_paste_alone) {
    Journal journal;
    AppSettings settings(journal, journal);
    settings.applyPreset(preset(u"groq"));
    settings.tone = TranslationTone::formal;
    settings.autoPaste = false;
    settings.updateCustomHotKey(14, 2048, u"⌥ E"_s);
    settings.updateCustomOCRHotKey(15, 4096, u"⌃ R"_s);
    EXPECT_EQ(journal.entries.last(), u"register ocr 15 4096"_s);
    journal.entries.clear();

    settings.resetToDefaults();
    EXPECT_EQ(journal.entries,
              QStringList({u"base_url"_s, u"model"_s, u"api_key"_s, u"custom_prompt"_s, u"preset_id"_s,
                           u"tone"_s, u"hotkey_keycode"_s, u"hotkey_modifiers"_s, u"hotkey_display"_s,
                           u"register text 2 768"_s, u"ocr_hotkey_keycode"_s, u"ocr_hotkey_modifiers"_s,
                           u"ocr_hotkey_display"_s, u"register ocr 1 768"_s}));
    EXPECT_FALSE(settings.autoPaste());
    EXPECT_EQ(settings.tone(), TranslationTone::natural);
    EXPECT_EQ(settings.baseURL(), AppSettings::defaultBaseURL);
    EXPECT_EQ(textHotKey(settings), defaultTextHotKey);
    EXPECT_EQ(ocrHotKey(settings), defaultOcrHotKey);
}

TEST(AppSettingsTest, assigning_a_hot_key_property_registers_nothing) {
    Journal journal;
    AppSettings settings(journal, journal);
    settings.hotKeyKeyCode = 40;
    EXPECT_EQ(journal.entries, QStringList(u"hotkey_keycode"_s));
}

}  // namespace
}  // namespace tralio
