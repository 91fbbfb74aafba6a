#include "platform/linux/speech/speech_dispatcher.h"
#include "platform/linux/speech/speech_voices.h"
#include "platform/scripted_speech_daemon.h"
#include "support/debug_log_file.h"
#include "support/fake_clock.h"

namespace tralio {
namespace {

using testing::HasSubstr;

struct SpeechDaemon : testing::Test {
    SpeechDaemon() { useLimits({}); }
    void useLimits(const SpeechDispatcher::Limits& limits) {
        synthesizer.emplace(path, folder.filePath(u"missing"_s), clock, limits);
    }
    void speak(const QString& text, const QStringList& tags = {u"vi-VN"_s, u"en-US"_s}) {
        ended.clear();
        synthesizer->speak({text, tags}, [this, text](ReadingEnd end) {
            ended << text;
            lastEnd = end;
        });
    }

    /// Has a text read, so far that it is with the daemon.
    [[nodiscard]] bool begin(const QString& text) {
        const int before = daemon->taken;
        speak(text);
        return eventually([&] {
            return daemon->taken > before && daemon->taken == daemon->texts.size() &&
                !daemon->texts.last().contains("probe");
        });
    }

    /// The daemon tells these of the message that it took last, and the program has heard it.
    [[nodiscard]] bool tell(const QByteArrayList& events) {
        for (const QByteArray& event : events)
            daemon->tell(event, daemon->taken);
        return nextTurn() && nextTurn();
    }

    [[nodiscard]] bool fallsSilent() {
        return eventually([&] { return !synthesizer->isSpeaking(); });
    }
    [[nodiscard]] bool isCancelled() {
        return eventually([&] { return daemon->heard("CANCEL SELF"); });
    }
    [[nodiscard]] bool endsWithLogLine(const char* part) {
        return eventually([&] { return !ended.isEmpty(); }) && !synthesizer->isSpeaking() &&
            lastEnd == ReadingEnd::failed && log.messages().size() == 1 &&
            log.messages().first().contains(QLatin1StringView(part));
    }

    DebugLogFile log;
    QTemporaryDir folder;
    QString path = folder.filePath(u"s.sock"_s);
    FakeClock clock;
    std::optional<ScriptedDaemon> daemon{path};
    QStringList ended;
    ReadingEnd lastEnd = ReadingEnd::over;
    std::optional<SpeechDispatcher> synthesizer;
};

TEST_F(SpeechDaemon, a_text_is_read_in_its_voice_and_told_to_end_and_after_an_idle_minute_nothing_stays) {
    EXPECT_TRUE(nextTurn());
    EXPECT_EQ(daemon->connection, nullptr) << "nothing is connected before the first text";
    ASSERT_TRUE(begin(u"Một.\n.hai\nQUIT"_s));
    EXPECT_TRUE(daemon->heard("SET SELF OUTPUT_MODULE engine"));
    EXPECT_TRUE(daemon->heard("SET SELF LANGUAGE vi"));
    EXPECT_FALSE(daemon->heard("SET SELF OUTPUT_MODULE dummy"));
    EXPECT_TRUE(daemon->heard("SET SELF SSML_MODE on")) << "the marks would be read aloud";
    EXPECT_THAT(daemon->texts.first().toStdString(), HasSubstr("\n..hai"));
    EXPECT_TRUE(tell({"701 BEGIN", "700 INDEX MARK"}));
    EXPECT_TRUE(synthesizer->isSpeaking());
    EXPECT_TRUE(tell({"702 END"}));
    EXPECT_TRUE(fallsSilent());
    EXPECT_THAT(ended, ElementsAre(u"Một.\n.hai\nQUIT"_s));
    EXPECT_EQ(lastEnd, ReadingEnd::over);

    clock.advance(59s);
    ASSERT_TRUE(begin(u"hai"_s));
    clock.advance(2s);
    EXPECT_TRUE(nextTurn());
    EXPECT_TRUE(synthesizer->isSpeaking());
    EXPECT_TRUE(tell({"703 CANCELED"}));  // another program's text was more urgent
    EXPECT_TRUE(fallsSilent());
    EXPECT_EQ(lastEnd, ReadingEnd::over);
    clock.advance(1min);
    EXPECT_TRUE(eventually([&] { return daemon->connection->state() != QLocalSocket::ConnectedState; }));
    EXPECT_EQ(clock.pending(), 0);

    speak(u"hello"_s, {u"en-US"_s});
    EXPECT_TRUE(eventually([&] { return daemon->heard("SET SELF LANGUAGE fr"); })) << "the default voice";
    EXPECT_THAT(log.messages(), IsEmpty());
}

TEST_F(SpeechDaemon, a_stop_silences_at_once_and_its_late_news_do_not_end_the_next_text) {
    speak(u"không"_s);
    synthesizer->stopSpeaking();
    ASSERT_TRUE(begin(u"một"_s));
    EXPECT_THAT(daemon->texts, SizeIs(1)) << "what was stopped before the daemon was ready is never read";
    synthesizer->stopSpeaking();
    EXPECT_FALSE(synthesizer->isSpeaking());
    EXPECT_THAT(ended, ElementsAre(u"một"_s));
    EXPECT_TRUE(isCancelled());
    ASSERT_TRUE(begin(u"hai"_s));
    daemon->tell("703 CANCELED", 1);
    EXPECT_TRUE(tell({"700 INDEX MARK"}));
    EXPECT_TRUE(synthesizer->isSpeaking());
    EXPECT_THAT(ended, IsEmpty());
    daemon->commands.clear();
    synthesizer.reset();
    EXPECT_TRUE(isCancelled()) << "nobody could stop it any more";
}

TEST_F(SpeechDaemon, a_long_text_reaches_a_daemon_that_reads_slowly_whole) {
    ASSERT_TRUE(begin(u"một"_s));
    daemon->connection->setReadBufferSize(4096);
    QString text;  // more than a socket holds
    for (int line = 0; line < 20'000; ++line)
        text += u"%1 %2\n"_s.arg(line).arg(line % 7);
    const QByteArray expected = withMarks(text).toUtf8() + '\n';
    ASSERT_TRUE(begin(text));
    EXPECT_EQ(daemon->texts.last().size(), expected.size());
    EXPECT_TRUE(daemon->texts.last() == expected);
    EXPECT_THAT(log.messages(), IsEmpty());
}

TEST_F(SpeechDaemon, a_daemon_that_dies_or_is_missing_or_hangs_ends_the_reading) {
    ASSERT_TRUE(begin(u"một"_s));
    daemon.reset();
    EXPECT_TRUE(endsWithLogLine("closed"));

    log.clear();
    speak(u"không ai nghe"_s);
    EXPECT_TRUE(endsWithLogLine("SpeechDispatcher: "));

    log.clear();
    daemon.emplace(path);
    daemon->isHung = true;
    speak(u"một"_s);
    EXPECT_TRUE(eventually([&] { return !daemon->commands.isEmpty(); }));
    clock.advance(9999ms);
    EXPECT_TRUE(synthesizer->isSpeaking());
    clock.advance(1ms);
    EXPECT_TRUE(endsWithLogLine("does not answer"));
    daemon->isHung = false;
    EXPECT_TRUE(begin(u"hai"_s)) << "the next text finds the next daemon";
}

TEST_F(SpeechDaemon, a_text_whose_first_word_is_never_heard_ends_soon_and_one_endless_word_does_not) {
    const std::pair<QString, QByteArrayList> notYet[] = {
        // Fourteen letters of a script that the voice does not have take eleven seconds.
        {u"パスワードを入力してください"_s, {"701 BEGIN"}},
        {u"日本 語"_s, {"701 BEGIN"}},
        {u"👍 tốt"_s, {"701 BEGIN"}},
        {u"012345 là số"_s, {"701 BEGIN"}},
        {u"Donaudampfschifffahrtsgesellschaft ist"_s, {"701 BEGIN"}},
        {u"một hai ba"_s, {"701 BEGIN"}},  // this engine has never told of a mark
        {u"một hai ba"_s, {"701 BEGIN", "700 INDEX MARK"}},
    };
    for (const auto& [text, events] : notYet) {
        ASSERT_TRUE(begin(text));
        EXPECT_TRUE(tell(events));
        clock.advance(6s);
        EXPECT_TRUE(synthesizer->isSpeaking()) << events.size() << ' ' << text.toStdString();
        synthesizer->stopSpeaking();
    }
    ASSERT_TRUE(begin(u"một hai ba"_s));
    EXPECT_TRUE(tell({"701 BEGIN"}));
    clock.advance(4999ms);
    EXPECT_TRUE(synthesizer->isSpeaking());
    daemon->commands.clear();
    clock.advance(1ms);
    EXPECT_TRUE(endsWithLogLine("no sound"));
    EXPECT_TRUE(isCancelled()) << "a sound device may come back";
}

TEST_F(SpeechDaemon, an_engine_that_has_died_is_found_out_when_it_has_been_quiet) {
    useLimits({.reply = 1h});
    const auto probes = [this] { return daemon->texts.count("<speak><mark name=\"probe\"/></speak>\n"); };
    const auto questions = [this] { return daemon->commands.count("LIST SYNTHESIS_VOICES"); };
    const auto grows = [this](const auto& count) {
        const auto before = count();
        return eventually([&] {
            clock.advance(1s);
            return count() > before;
        });
    };
    ASSERT_TRUE(begin(u"một"_s));
    ASSERT_TRUE(grows(probes) && grows(probes) && grows(questions) && grows(probes) && grows(questions));
    EXPECT_TRUE(synthesizer->isSpeaking()) << "it lives, and only takes its time";
    EXPECT_FALSE(daemon->heard("CANCEL SELF"));
    daemon->tell("702 END", 1);
    EXPECT_TRUE(isCancelled()) << "what waits behind the text";
    daemon->tell("701 BEGIN", 2);
    EXPECT_TRUE(nextTurn() && nextTurn());
    EXPECT_EQ(lastEnd, ReadingEnd::over);
    EXPECT_THAT(log.messages(), IsEmpty());

    ASSERT_TRUE(begin(u"hai"_s));
    ASSERT_TRUE(grows(probes));
    daemon->commands.clear();
    daemon->tell("701 BEGIN", daemon->taken);
    EXPECT_TRUE(endsWithLogLine("engine has died")) << "another engine has begun what waits behind the text";
    EXPECT_TRUE(daemon->heard("CANCEL SELF"));

    log.clear();
    ASSERT_TRUE(begin(u"ba"_s));
    daemon->answers["LIST SYNTHESIS_VOICES"] = "321 ERR MODULE CANT REPORT VOICES";
    EXPECT_TRUE(grows(questions));
    EXPECT_TRUE(endsWithLogLine("engine has died")) << "there is no other";
}

TEST(SpeechVoices, the_closest_voice_of_the_most_wanted_language_is_chosen) {
    const SpeechModule british{u"festival"_s, {u"en-GB"_s, u"es"_s}};
    const SpeechModule espeak{
        u"espeak-ng"_s, {u"vie"_s, u"vi-vn-x-south"_s, u"vi"_s, u"en-gb"_s, u"en_US"_s}};
    const SpeechModule french{u"fr-only"_s, {u"fr"_s}};
    const std::tuple<QStringList, std::vector<SpeechModule>, std::optional<SpeechVoice>> cases[] = {
        {{u"vi-VN"_s, u"en-US"_s}, {british, espeak}, SpeechVoice{u"espeak-ng"_s, u"vi"_s}},
        {{u"en-US"_s}, {espeak, british}, SpeechVoice{u"espeak-ng"_s, u"en_US"_s}},
        {{u"en-US"_s}, {british, espeak}, SpeechVoice{u"festival"_s, u"en-GB"_s}},
        {{u"vi-VN"_s, u"en-US"_s}, {french, british}, SpeechVoice{u"festival"_s, u"en-GB"_s}},
        {{u"vi-VN"_s, u"en-US"_s}, {french}, std::nullopt},
    };
    for (const auto& [tags, modules, chosen] : cases)
        EXPECT_EQ(chooseVoice(tags, modules), chosen) << tags.join(u' ').toStdString();
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
