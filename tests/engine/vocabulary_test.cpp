#include <QSet>
#include <QUrl>

#include <gmock/gmock.h>

#include "engine/hosts.h"
#include "engine/provider_preset.h"
#include "engine/translation_tone.h"
#include "support/print_to.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;

TEST(TranslationToneTest, every_tone_is_found_by_its_label_and_by_nothing_else) {
    EXPECT_THAT(TranslationTone::allCases(), ElementsAre(TranslationTone::natural, TranslationTone::technical,
                                                         TranslationTone::formal, TranslationTone::concise));
    QSet<QString> instructions;
    for (const TranslationTone& tone : TranslationTone::allCases()) {
        EXPECT_EQ(TranslationTone::fromRawValue(tone.rawValue()), tone);
        EXPECT_EQ(tone.id(), tone.rawValue());
        instructions.insert(tone.promptInstruction());
    }
    EXPECT_EQ(instructions.size(), 4);
    EXPECT_EQ(TranslationTone(), TranslationTone::natural);

    for (const QString& other : {u"tự nhiên"_s, u"Tự nhiên "_s, u"natural"_s, u"Tu nhien"_s, QString()})
        EXPECT_EQ(TranslationTone::fromRawValue(other), std::nullopt) << qPrintable(other);
    EXPECT_EQ(TranslationTone::fromRawValue(u"Tự nhiên"_s.normalized(QString::NormalizationForm_D)),
              std::nullopt);
}

TEST(ProviderPresetTest, the_presets_stand_in_order_and_name_endpoints_without_a_tail) {
    QStringList ids;
    for (const ProviderPreset& preset : ProviderPreset::presets()) {
        ids.append(preset.id);
        if (preset.id == u"custom")
            continue;
        const QUrl url(preset.baseURL, QUrl::StrictMode);
        EXPECT_TRUE(url.isValid()) << qPrintable(preset.baseURL);
        EXPECT_EQ(url.scheme(), preset.id == u"ollama" ? u"http"_s : u"https"_s);
        EXPECT_FALSE(preset.baseURL.endsWith(u'/'));
        EXPECT_FALSE(preset.defaultModel.isEmpty());
    }
    EXPECT_EQ(ids,
              (QStringList{u"kavo"_s, u"kavo_translategemma"_s, u"kavo_sonnet"_s, u"openai"_s, u"gemini"_s,
                           u"deepseek"_s, u"groq"_s, u"openrouter"_s, u"ollama"_s, u"custom"_s}));

    const QList<ProviderPreset>& presets = ProviderPreset::presets();
    EXPECT_EQ(QUrl(presets.first().baseURL).host(), hosts::gateway);
    EXPECT_EQ(presets.at(1).baseURL, presets.first().baseURL);
    EXPECT_EQ(presets.at(2).baseURL, presets.first().baseURL);
    EXPECT_TRUE(presets.last().baseURL.isEmpty());
    EXPECT_TRUE(presets.last().defaultModel.isEmpty());
}

TEST(ProviderPresetTest, presets_that_differ_only_in_the_help_text_are_not_equal) {
    const ProviderPreset preset = ProviderPreset::presets().first();
    ProviderPreset other = preset;
    EXPECT_EQ(other, preset);
    other.helpText += u'!';
    EXPECT_NE(other, preset);
}

}  // namespace
}  // namespace tralio
