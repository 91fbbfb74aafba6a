#include <signal.h>

#include "common/clock.h"
#include "desktop/fixtures.h"
#include "platform/linux/speech/speech_dispatcher.h"
#include "speech/speech_service.h"
#include "support/debug_log_file.h"

namespace tralio {
namespace {

/// A session with a sound server that plays into a null output at the speed of real sound, and a speech
/// daemon of its own as soon as one is needed.
class SpeechSession final : public TestSession {
public:
    SpeechSession() {
        // The daemon inherits this process's environment; its processes are recognised by the folder's name
        // in their arguments.
        for (const char* own : {"HOME", "XDG_RUNTIME_DIR"})
            qputenv(own, environment().value(QString::fromLatin1(own)).toUtf8());
        write(u".config/speech-dispatcher/modules/espeak-ng.conf"_s,
            QString::fromUtf8(contentOf(u"/etc/speech-dispatcher/modules/espeak-ng.conf"_s)));
        write(u".config/speech-dispatcher/speechd.conf"_s,
            u"AddModule \"espeak-ng\" \"sd_espeak-ng\" \"espeak-ng.conf\"\nDefaultModule espeak-ng\n"_s);
        start(u"pulseaudio"_s,
            {u"-n"_s, u"-F"_s, u"/dev/null"_s, u"--daemonize=no"_s, u"--exit-idle-time=-1"_s,
                u"--load=module-null-sink"_s, u"--load=module-native-protocol-unix"_s});
        awaitStart(u"pulseaudio"_s, [this] { return QFile::exists(home() + u"/runtime/pulse/native"_s); });
    }
    ~SpeechSession() override {
        for (const qint32 process : processes({}))
            kill(process, SIGKILL);
    }
    void pressTextHotKey() const override {}  // this session has no keys

    /// Sends a signal to the session's processes that have this argument. Returns whether there are any.
    [[nodiscard]] bool signal(const QByteArray& argument, int number) const {
        const QList<qint32> found = processes(argument);
        for (const qint32 process : found)
            kill(process, number);
        return !found.isEmpty();
    }

private:
    /// The processes of this session's speech daemon and its engines that have this argument.
    [[nodiscard]] QList<qint32> processes(const QByteArray& argument) const {
        QList<qint32> found;
        for (const QString& name : QDir(u"/proc"_s).entryList(QDir::Dirs)) {
            const QByteArray line = contentOf(u"/proc/"_s + name + u"/cmdline"_s);
            if (name.toInt() != 0 && line.contains(home().toUtf8()) && line.contains(argument + '\0'))
                found << name.toInt();
        }
        return found;
    }
};

struct RealSpeech : testing::Test {
    [[nodiscard]] bool fallsSilent(int seconds) {
        return waitUntil([this] { return !service.isSpeaking(); }, seconds);
    }

    /// Starts to read a text that takes about twenty minutes, and waits until it can be heard.
    void beginLongText() {
        service.speak(u"Trời hôm nay rất đẹp. "_s.repeated(1000), u"Tiếng Việt"_s);
        EXPECT_FALSE(fallsSilent(3));
    }

    DebugLogFile log;
    SpeechSession session;
    SystemClock clock;
    SpeechDispatcher synthesizer{
        qEnvironmentVariable("XDG_RUNTIME_DIR") + u"/speech-dispatcher/speechd.sock"_s,
        u"speech-dispatcher"_s, clock, {.quiet = 3s}};
    SpeechService service{synthesizer};
};

TEST_F(RealSpeech, a_text_ends_by_itself_and_a_long_one_at_once_when_it_is_stopped) {
    for (const QString& language : {u"Tiếng Việt"_s, u"Tiếng Anh"_s}) {
        const Stopwatch sinceBegin;
        service.speak(u"Xin chào <các> bạn & tất cả"_s, language);
        EXPECT_TRUE(service.isSpeaking());
        EXPECT_TRUE(fallsSilent(15));
        EXPECT_GT(sinceBegin.elapsed(), 1000) << "as long as the words take";
    }
    beginLongText();
    service.stop();
    EXPECT_FALSE(service.isSpeaking());
    service.speak(u"một"_s, u"Tiếng Việt"_s);
    EXPECT_TRUE(service.isSpeaking());
    EXPECT_TRUE(fallsSilent(10)) << "not after the rest of the long text";
}

TEST_F(RealSpeech, a_daemon_or_an_engine_that_is_killed_or_hangs_ends_the_reading_and_the_next_text_is_read) {
    beginLongText();
    ASSERT_TRUE(session.signal("speech-dispatcher", SIGKILL));
    EXPECT_TRUE(fallsSilent(2));

    beginLongText();
    // From 0.12 on the daemon has a second espeak-ng engine, without a configuration file.
    ASSERT_TRUE(session.signal("espeak-ng.conf", SIGKILL));
    EXPECT_TRUE(fallsSilent(20));
    EXPECT_TRUE(service.failure().has_value()) << "in words";
    // A daemon whose engine is dead exits when it has had no client for a while.
    EXPECT_TRUE(waitUntil([&] { return !session.signal("speech-dispatcher", 0); }, 20));
    service.speak(u"một"_s, u"Tiếng Việt"_s);
    EXPECT_TRUE(fallsSilent(10));
    beginLongText();
    ASSERT_TRUE(session.signal("speech-dispatcher", SIGSTOP));
    EXPECT_TRUE(fallsSilent(20));
    // A third line may say that the daemon ended while we were still connected.
    const QString told = log.messages().join(u'\n');
    EXPECT_TRUE(log.messages().value(0).endsWith(u"closed the connection")) << told.toStdString();
    // A daemon of version 0.12 may die with its engine.
    EXPECT_TRUE(log.messages().value(1).endsWith(u"the speech engine has died") ||
        log.messages().value(1).endsWith(u"closed the connection"))
        << told.toStdString();
}

TEST(SpeechButton, reads_the_result_aloud_and_stops) {
    const SpeechSession session;
    VirtualDesktop desktop;
    desktop.setVariable(u"XDG_DATA_HOME"_s, desktop.home() + u"/.local/share"_s);
    for (const char* own : {"HOME", "XDG_RUNTIME_DIR"})  // of the speech session
        desktop.setVariable(QString::fromLatin1(own), qEnvironmentVariable(own));
    ProgramRun program(desktop);
    program.standIn().translatesTo(u"Trời hôm nay rất đẹp. "_s.repeated(1000));
    ASSERT_TRUE(program.openByHotKey());
    desktop.enter(u"hello"_s);

    ASSERT_TRUE(program.click(u"Đọc"_s));
    ASSERT_TRUE(waitUntil([&] { return program.shows(u"Dừng"_s); }));
    EXPECT_TRUE(waitUntil([&] { return session.signal("sd_espeak-ng", 0); }));
    EXPECT_FALSE(waitUntil([&] { return program.shows(u"Đọc"_s); }, 3)) << "nothing is read";
    ASSERT_TRUE(program.click(u"Dừng"_s));
    EXPECT_TRUE(waitUntil([&] { return program.shows(u"Đọc"_s); }));
}

}  // namespace
}  // namespace tralio
