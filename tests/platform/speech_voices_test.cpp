#include "platform/linux/speech/speech_voices.h"

#include "support/testing.h"

namespace tralio {
namespace {

TEST(SpeechVoices, the_closest_voice_of_the_most_wanted_language_is_chosen) {
    const SpeechModule british{u"festival"_s, {u"en-GB"_s, u"es"_s}};
    const SpeechModule espeak{
        u"espeak-ng"_s, {u"vie"_s, u"vi-vn-x-south"_s, u"vi"_s, u"en-gb"_s, u"en_US"_s}};
    const SpeechModule french{u"fr-only"_s, {u"fr"_s}};
    struct Case {
        QStringList tags;
        std::vector<SpeechModule> modules;
        std::optional<SpeechVoice> chosen;
    };
    const Case cases[] = {
        {{u"vi-VN"_s, u"en-US"_s}, {british, espeak}, SpeechVoice{u"espeak-ng"_s, u"vi"_s}},
        {{u"en-US"_s}, {espeak, british}, SpeechVoice{u"espeak-ng"_s, u"en_US"_s}},
        {{u"en-US"_s}, {british, espeak}, SpeechVoice{u"festival"_s, u"en-GB"_s}},
        {{u"vi-VN"_s, u"en-US"_s}, {french, british}, SpeechVoice{u"festival"_s, u"en-GB"_s}},
        {{u"vi-VN"_s, u"en-US"_s}, {french}, std::nullopt},
    };
    for (const Case& given : cases)
        EXPECT_EQ(chooseVoice(given.tags, given.modules), given.chosen)
            << given.tags.join(u' ').toStdString();
}

TEST(SpeechVoices, an_engines_languages_are_read_from_its_list) {
    EXPECT_EQ(languagesOf("Vietnamese\tvi\tnone\nVietnamese+Adam\tvi\tAdam\nbroken\nEnglish\ten-us\n"),
        (QStringList{u"vi"_s, u"en-us"_s}));
}

TEST(SpeechVoices, marks_stand_behind_first_words_before_their_stops_and_within_long_sentences) {
    EXPECT_EQ(withMarks(u"A. B\vc? 3.5 <b>&\u0001\nNo! No... d"_s),
        u"<speak>A<mark name=\"0\"/>. B<mark name=\"1\"/> c? 3.5<mark name=\"2\"/> &lt;b&gt;&amp;\n"
        "No<mark name=\"3\"/>! No... d</speak>"_s);
    const QString endless = u"bla "_s.repeated(5000);
    EXPECT_GT(withMarks(endless).count(u"<mark"), 100);
}

}  // namespace
}  // namespace tralio
