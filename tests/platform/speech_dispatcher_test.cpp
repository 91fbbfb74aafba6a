#include "platform/linux/speech/speech_dispatcher.h"

#include <QTemporaryDir>

#include "platform/scripted_speech_daemon.h"
#include "support/debug_log_file.h"
#include "support/event_loop.h"
#include "support/fake_clock.h"
#include "support/testing.h"

namespace tralio {
namespace {

using testing::HasSubstr;

class SpeechDaemon : public testing::Test {
protected:
    void speak(const QString& text) {
        synthesizer.speak(
            {text, {u"vi-VN"_s, u"en-US"_s}},
            [this, text](ReadingEnd end) {
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

    [[nodiscard]] bool endsWithLogLine(const char* part) {
        return eventually([&] { return !ended.isEmpty(); }) && !synthesizer.isSpeaking() &&
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
    SpeechDispatcher synthesizer{path, folder.filePath(u"missing"_s), clock, {}};
};

TEST_F(SpeechDaemon, a_text_is_read_in_its_voice_and_told_to_end) {
    EXPECT_TRUE(nextTurn());
    EXPECT_EQ(daemon->connection, nullptr) << "nothing is connected before the first text";
    ASSERT_TRUE(begin(u"Một.\n.hai\nQUIT"_s));
    EXPECT_TRUE(daemon->heard("SET SELF OUTPUT_MODULE engine"));
    EXPECT_TRUE(daemon->heard("SET SELF LANGUAGE vi"));
    EXPECT_FALSE(daemon->heard("SET SELF OUTPUT_MODULE dummy"));
    EXPECT_TRUE(daemon->heard("SET SELF SSML_MODE on")) << "the marks would be read aloud";
    EXPECT_THAT(daemon->texts.first().toStdString(), HasSubstr("\n..hai"));
    daemon->tell("701 BEGIN", 1);
    daemon->tell("700 INDEX MARK", 1);
    EXPECT_TRUE(nextTurn());
    EXPECT_TRUE(synthesizer.isSpeaking());
    daemon->tell("702 END", 1);
    EXPECT_TRUE(eventually([&] { return !synthesizer.isSpeaking(); }));
    EXPECT_THAT(ended, ElementsAre(u"Một.\n.hai\nQUIT"_s));
    EXPECT_EQ(lastEnd, ReadingEnd::over);

    ASSERT_TRUE(begin(u"hai"_s));
    daemon->tell("703 CANCELED", 2);  // another program's text was more urgent
    EXPECT_TRUE(eventually([&] { return !synthesizer.isSpeaking(); }));
    EXPECT_EQ(lastEnd, ReadingEnd::over);

    synthesizer.speak(
        {u"hello"_s, {u"en-US"_s}}, [](ReadingEnd) {});
    EXPECT_TRUE(eventually([&] { return daemon->heard("SET SELF LANGUAGE fr"); })) << "the default voice";
    EXPECT_THAT(log.messages(), IsEmpty());
}

TEST_F(SpeechDaemon, a_stop_silences_at_once_and_its_late_news_do_not_end_the_next_text) {
    ASSERT_TRUE(begin(u"một"_s));
    synthesizer.stopSpeaking();
    EXPECT_FALSE(synthesizer.isSpeaking());
    EXPECT_TRUE(eventually([&] { return daemon->heard("CANCEL SELF"); }));
    ASSERT_TRUE(begin(u"hai"_s));
    daemon->tell("703 CANCELED", 1);
    daemon->tell("700 INDEX MARK", 2);
    EXPECT_TRUE(nextTurn() && nextTurn());
    EXPECT_TRUE(synthesizer.isSpeaking());
    EXPECT_THAT(ended, ElementsAre(u"một"_s));
}

TEST_F(SpeechDaemon, a_text_stopped_before_the_daemon_was_ready_is_never_read) {
    speak(u"một"_s);
    synthesizer.stopSpeaking();
    ASSERT_TRUE(begin(u"hai"_s));
    ASSERT_EQ(daemon->texts.size(), 1);
    EXPECT_THAT(daemon->texts.first().toStdString(), HasSubstr("hai"));
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

TEST_F(SpeechDaemon, a_daemon_that_dies_or_is_missing_ends_the_reading) {
    ASSERT_TRUE(begin(u"một"_s));
    daemon.reset();
    EXPECT_TRUE(endsWithLogLine("closed"));

    log.clear();
    ended.clear();
    speak(u"không ai nghe"_s);
    EXPECT_TRUE(endsWithLogLine("SpeechDispatcher: "));
    daemon.emplace(path);
    EXPECT_TRUE(begin(u"hai"_s)) << "the next text finds the next daemon";
}

TEST_F(SpeechDaemon, a_daemon_that_hangs_ends_the_reading_after_its_time) {
    daemon->isHung = true;
    speak(u"một"_s);
    EXPECT_TRUE(eventually([&] { return !daemon->commands.isEmpty(); }));
    clock.advance(9999ms);
    EXPECT_TRUE(synthesizer.isSpeaking());
    clock.advance(1ms);
    EXPECT_TRUE(endsWithLogLine("does not answer"));
}

TEST_F(SpeechDaemon, a_text_whose_first_word_is_never_heard_ends_soon_and_one_endless_word_does_not) {
    ASSERT_TRUE(begin(QString(60, u'あ')));
    daemon->tell("701 BEGIN", 1);
    EXPECT_TRUE(nextTurn() && nextTurn());
    clock.advance(6s);
    EXPECT_TRUE(synthesizer.isSpeaking());
    synthesizer.stopSpeaking();
    ended.clear();

    ASSERT_TRUE(begin(u"một hai ba"_s));
    daemon->tell("701 BEGIN", daemon->taken);
    EXPECT_TRUE(nextTurn() && nextTurn());
    clock.advance(6s);
    EXPECT_TRUE(synthesizer.isSpeaking()) << "this engine has never told of a mark";
    synthesizer.stopSpeaking();
    ended.clear();

    ASSERT_TRUE(begin(u"một hai ba"_s));
    const int second = daemon->taken;
    daemon->tell("701 BEGIN", second);
    daemon->tell("700 INDEX MARK", second);
    EXPECT_TRUE(nextTurn() && nextTurn());
    clock.advance(6s);
    EXPECT_TRUE(synthesizer.isSpeaking());
    synthesizer.stopSpeaking();
    ended.clear();

    ASSERT_TRUE(begin(u"một hai ba"_s));
    daemon->tell("701 BEGIN", daemon->taken);
    EXPECT_TRUE(nextTurn() && nextTurn());
    clock.advance(4999ms);
    EXPECT_TRUE(synthesizer.isSpeaking());
    clock.advance(1ms);
    EXPECT_TRUE(endsWithLogLine("no sound"));
}

TEST_F(SpeechDaemon, an_engine_that_has_died_is_found_out_when_it_has_been_quiet) {
    SpeechDispatcher patient(path, {}, clock, {.reply = 1h});
    const auto beginPatiently = [&](const QString& text) {
        ended.clear();
        log.clear();
        const int before = daemon->taken;
        patient.speak(
            {text, {}},
            [this, text](ReadingEnd end) {
                ended << text;
                lastEnd = end;
            });
        return eventually([&] { return daemon->taken > before; });
    };
    const auto probes = [this] { return daemon->texts.count("<speak><mark name=\"probe\"/></speak>\n"); };
    const auto questions = [this] { return daemon->commands.count("LIST SYNTHESIS_VOICES"); };
    const auto grows = [this](const auto& count) {
        const auto before = count();
        return eventually([&] {
            clock.advance(1s);
            return count() > before;
        });
    };
    ASSERT_TRUE(beginPatiently(u"một"_s));
    ASSERT_TRUE(grows(probes) && grows(probes) && grows(questions) && grows(probes) && grows(questions));
    EXPECT_TRUE(patient.isSpeaking()) << "it lives, and only takes its time";
    EXPECT_FALSE(daemon->heard("CANCEL SELF"));
    daemon->tell("702 END", 1);
    EXPECT_TRUE(eventually([&] { return daemon->heard("CANCEL SELF"); })) << "what waits behind the text";
    daemon->tell("701 BEGIN", 2);
    EXPECT_TRUE(nextTurn() && nextTurn());
    EXPECT_EQ(lastEnd, ReadingEnd::over);
    EXPECT_THAT(log.messages(), IsEmpty());

    ASSERT_TRUE(beginPatiently(u"hai"_s));
    ASSERT_TRUE(grows(probes));
    daemon->commands.clear();
    daemon->tell("701 BEGIN", daemon->taken);
    EXPECT_TRUE(endsWithLogLine("engine has died")) << "another engine has begun what waits behind the text";
    EXPECT_TRUE(daemon->heard("CANCEL SELF"));

    ASSERT_TRUE(beginPatiently(u"ba"_s));
    daemon->hasEngine = false;
    EXPECT_TRUE(grows(questions));
    EXPECT_TRUE(endsWithLogLine("engine has died")) << "there is no other";
}

TEST_F(SpeechDaemon, the_connection_is_given_up_after_an_idle_minute) {
    ASSERT_TRUE(begin(u"một"_s));
    daemon->tell("702 END", 1);
    EXPECT_TRUE(eventually([&] { return !synthesizer.isSpeaking(); }));
    clock.advance(59s);
    ASSERT_TRUE(begin(u"hai"_s));
    clock.advance(2s);
    EXPECT_TRUE(nextTurn());
    EXPECT_TRUE(synthesizer.isSpeaking());
    daemon->tell("702 END", 2);
    EXPECT_TRUE(eventually([&] { return !synthesizer.isSpeaking(); }));
    clock.advance(1min);
    EXPECT_TRUE(eventually([&] { return daemon->connection->state() != QLocalSocket::ConnectedState; }));
    EXPECT_EQ(clock.pending(), 0);
}

}  // namespace
}  // namespace tralio
