#include <QSet>
#include <QUrl>

#include "engine/provider_preset.h"
#include "engine/translation_tone.h"
#include "support/testing.h"

namespace tralio {
namespace {

TEST(TranslationToneTest, every_tone_is_found_by_its_label_and_by_nothing_else) {
    QSet<QString> instructions;
    for (const TranslationTone& tone : TranslationTone::allCases()) {
        EXPECT_EQ(TranslationTone::fromRawValue(tone.rawValue()), tone);
        instructions.insert(tone.promptInstruction());
    }
    EXPECT_EQ(instructions.size(), 4);
    for (const QString& other : {u"tự nhiên"_s, u"Tự nhiên "_s, QString()})
        EXPECT_EQ(TranslationTone::fromRawValue(other), std::nullopt) << qPrintable(other);
}

TEST(ProviderPresetTest, the_presets_name_a_model_and_an_endpoint_without_its_tail) {
    for (const ProviderPreset& preset : ProviderPreset::presets()) {
        if (preset.id == u"custom")
            continue;
        const QUrl url(preset.baseURL, QUrl::StrictMode);
        EXPECT_TRUE(url.isValid()) << qPrintable(preset.baseURL);
        EXPECT_EQ(url.scheme(), preset.id == u"ollama" ? u"http"_s : u"https"_s);
        EXPECT_FALSE(preset.baseURL.endsWith(u'/'));
        EXPECT_FALSE(preset.defaultModel.isEmpty());
    }
}

}  // namespace
}  // namespace tralio
