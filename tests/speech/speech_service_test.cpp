#include "speech/speech_service.h"

#include <thread>

#include "speech/fake_synthesizer.h"

namespace tralio {
namespace {

struct Speech : testing::Test {
    /// The end arrives as it does from a real engine, on a thread of the engine's own.
    static void tell(const std::function<void(ReadingEnd)>& end, ReadingEnd how = ReadingEnd::over) {
        std::thread(end, how).join();
    }

    FakeSynthesizer synthesizer;
    std::unique_ptr<SpeechService> service = std::make_unique<SpeechService>(synthesizer);
};

TEST_F(Speech, english_has_its_own_voice_and_every_other_language_the_vietnamese_one) {
    const QStringList english{u"en-US"_s};
    const QStringList vietnamese{u"vi-VN"_s, u"en-US"_s};
    const std::pair<QString, QStringList> cases[] = {{u"Tiếng Anh"_s, english}, {u"TIẾNG ANH"_s, english},
        {u"EN"_s, english}, {u"Tiếng Việt"_s, vietnamese}, {u"Tiếng Nhật"_s, vietnamese},
        {u"en-US"_s, vietnamese}, {QString(), vietnamese}};
    for (const auto& [language, voices] : cases) {
        service->speak(u" \n xin chào\u00a0\u2029 "_s, language);
        EXPECT_EQ(synthesizer.reading, (Utterance{u"xin chào"_s, voices})) << language.toStdString();
        service->stop();
    }
}

TEST_F(Speech, a_second_call_stops_a_third_one_reads_again_and_blanks_do_neither) {
    service->speak(u" \t\n\u3000"_s, u"en"_s);
    service->stop();
    EXPECT_EQ(synthesizer.reading, std::nullopt);
    EXPECT_FALSE(service->isSpeaking());
    EXPECT_EQ(synthesizer.stops, 0) << "nothing was read";

    synthesizer.onSpeak = [this] { EXPECT_TRUE(service->isSpeaking()) << "told before the flag rises"; };
    service->speak(u"one"_s, u"en"_s);
    service->speak(u"  "_s, u"en"_s);
    EXPECT_TRUE(service->isSpeaking());
    EXPECT_EQ(synthesizer.stops, 0);
    service->speak(u"two"_s, u"en"_s);
    EXPECT_EQ(synthesizer.stops, 1);
    EXPECT_EQ(synthesizer.reading, std::nullopt);
    EXPECT_FALSE(service->isSpeaking());
    service->speak(u"three"_s, u"en"_s);
    EXPECT_TRUE(service->isSpeaking());
    EXPECT_EQ(synthesizer.reading->text, u"three"_s);
}

TEST_F(Speech, the_flag_falls_on_the_main_thread_after_the_end_of_the_present_utterance_only) {
    service->speak(u"one"_s, u"en"_s);
    const auto endOfFirst = synthesizer.end;
    service->stop();
    service->speak(u"two"_s, u"en"_s);
    tell(endOfFirst);
    EXPECT_TRUE(nextTurn());
    EXPECT_TRUE(service->isSpeaking()) << "the cancellation of the first text came late";

    QThread* changedOn = nullptr;
    QObject::connect(
        service.get(), &ObservableObject::objectWillChange, service.get(),
        [&] { changedOn = QThread::currentThread(); }, Qt::DirectConnection);
    tell(synthesizer.end);
    EXPECT_TRUE(service->isSpeaking()) << "not on the engine's thread";
    EXPECT_TRUE(nextTurn());
    EXPECT_FALSE(service->isSpeaking());
    EXPECT_EQ(changedOn, QThread::currentThread());

    service->speak(u"three"_s, u"en"_s);
    EXPECT_EQ(service->failure(), std::nullopt);
    tell(synthesizer.end, ReadingEnd::failed);
    EXPECT_TRUE(nextTurn());
    EXPECT_FALSE(service->isSpeaking());
    EXPECT_NE(service->failure(), std::nullopt);
    service->speak(u"four"_s, u"en"_s);
    EXPECT_EQ(service->failure(), std::nullopt) << "of another text";
    service->stop();
    tell(synthesizer.end, ReadingEnd::failed);
    EXPECT_TRUE(nextTurn());
    EXPECT_EQ(service->failure(), std::nullopt) << "of a text that was given up";

    service->speak(u"five"_s, u"en"_s);
    service.reset();
    tell(synthesizer.end);
    EXPECT_TRUE(nextTurn()) << "an end that comes after the service is gone reaches nobody";
}

}  // namespace
}  // namespace tralio
