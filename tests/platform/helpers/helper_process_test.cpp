#include "platform/linux/helpers/helper_process.h"

#include <csignal>

#include "platform/linux/helpers/http_protocol.h"
#include "platform/linux/helpers/recogniser_protocol.h"
#include "platform/linux/helpers/serving.h"
#include "support/fake_clock.h"

namespace tralio {
namespace {

/// Helpers that are shell scripts, in a time of their own.
struct HelperProcessTest : testing::Test {
    void serve(const QByteArray& commands) {
        const QString program = writeFile(folder.filePath(u"helper"_s),
            "#!/bin/sh\ncd '" + QFile::encodeName(folder.path()) + "'\n" + commands + "\n");
        begin(program);
    }
    void begin(const QString& program) {
        helper.emplace(HelperProcess::Terms{.program = program,
                           .environment = {{u"GREETING"_s, u"xin chào"_s}},
                           .maximumReply = 100,
                           .ping = frames::frame("\t"),
                           .silence = 10s,
                           .words = {u"no start"_s, u"ended"_s, u"hangs"_s, u"nonsense"_s}},
            clock);
        QObject::connect(
            &*helper, &HelperProcess::arrived, &*helper,
            [this](const std::string& payload) { came += QByteArray::fromStdString(payload); });
        QObject::connect(
            &*helper, &HelperProcess::lost, &*helper, [this](const QString& words) { losses += words; });
    }
    [[nodiscard]] bool exists(const QString& name) const { return QFile::exists(folder.filePath(name)); }
    [[nodiscard]] static bool lives(qint64 process) { return ::kill(static_cast<pid_t>(process), 0) == 0; }

    QTemporaryDir folder;
    FakeClock clock;
    std::optional<HelperProcess> helper;
    QList<QByteArray> came;
    QStringList losses;
};

TEST_F(HelperProcessTest, one_that_is_of_no_use_is_given_up_in_words_and_the_next_frame_starts_another) {
    const std::pair<QByteArray, QString> cases[] = {{"exit 0", u"ended"_s}, {"kill -SEGV $$", u"ended"_s},
        {"exit 3", u"Tralio vừa được cập nhật. Vui lòng thoát Tralio rồi mở lại."_s},
        {"exec >&-; exit 1", u"ended"_s},
        {"echo 'Warning: everything is fine'; exec sleep 100", u"nonsense"_s},
        {"head -c 300 /dev/zero | tr '\\0' T; exec sleep 100", u"nonsense"_s}};
    for (const auto& [commands, words] : cases) {
        losses.clear();
        came.clear();
        QFile::remove(folder.filePath(u"failed"_s));
        serve(
            "case $1 in --serve=1.*) ;; *) exit 1; esac; test \"$GREETING\" = 'xin chào' || exit 1\n"
            "if [ ! -e failed ]; then : >failed; " +
            commands + "; fi\nexec cat");
        EXPECT_EQ(helper->processId(), 0) << "it starts with the first frame";
        helper->send(frames::frame("lost"));
        EXPECT_TRUE(eventually([this] { return !losses.isEmpty(); })) << commands.toStdString();
        EXPECT_EQ(losses, QStringList{words}) << commands.toStdString();
        helper->send(frames::frame("next"));
        helper->send(frames::frame("another"));
        EXPECT_TRUE(eventually([this] { return came.size() == 2; })) << commands.toStdString();
        EXPECT_EQ(came, (QList<QByteArray>{"next", "another"}));
    }
    losses.clear();
    begin(u"/nowhere/at-all"_s);
    helper->send(frames::frame("lost"));
    EXPECT_TRUE(eventually([this] { return !losses.isEmpty(); }));
    EXPECT_EQ(losses, QStringList{u"no start"_s});
}

TEST_F(HelperProcessTest, one_that_is_silent_at_work_hangs_unless_it_was_allowed_to_or_answers_pings) {
    serve("exec sleep 100");
    helper->send(frames::frame("x"));
    const qint64 process = helper->processId();
    clock.advance(1h);
    EXPECT_EQ(losses, QStringList()) << "nothing was asked for";
    helper->setAtWork(true);
    helper->allowSilence(30s);
    clock.advance(29s);
    EXPECT_EQ(losses, QStringList());
    clock.advance(1s);
    EXPECT_EQ(losses, QStringList{u"hangs"_s});
    EXPECT_TRUE(eventually([&] { return !lives(process); }));

    losses.clear();
    serve("exec cat");
    helper->send(frames::frame("x"));
    helper->setAtWork(true);
    EXPECT_TRUE(eventually([this] { return came.size() == 1; }));
    for (qsizetype pings = 1; pings <= 20; ++pings) {
        clock.advance(2s);
        EXPECT_TRUE(eventually([&] { return came.size() == 1 + pings; }));
    }
    EXPECT_EQ(losses, QStringList());
    helper->setAtWork(false);
    EXPECT_EQ(clock.pending(), 1) << "no pings without work, and the end of its time";
}

TEST_F(HelperProcessTest, one_that_spoke_while_we_were_suspended_does_not_hang) {
    serve("head -c 9 >word; : >heard; while [ ! -e go ]; do :; done; cat word; : >told; exec sleep 100");
    helper->send(frames::frame("x"));
    helper->setAtWork(true);
    EXPECT_TRUE(eventually([this] { return exists(u"heard"_s); }));
    writeFile(folder.filePath(u"go"_s), {});
    while (!exists(u"told"_s)) {
        // No turn of the event loop: this is the suspension.
    }
    clock.advance(10s);
    EXPECT_EQ(losses, QStringList());
    EXPECT_EQ(came, QList<QByteArray>{"x"});
    clock.advance(10s);
    EXPECT_EQ(losses, QStringList{u"hangs"_s}) << "from then on it is silent again";
}

TEST_F(HelperProcessTest, one_that_stood_still_along_with_us_has_a_moment_to_speak) {
    serve("exec cat");
    helper->send(frames::frame("x"));
    helper->setAtWork(true);
    ASSERT_TRUE(eventually([this] { return came.size() == 1; }));
    const auto process = static_cast<pid_t>(helper->processId());
    ASSERT_EQ(::kill(process, SIGSTOP), 0);
    clock.standStill(1h);
    ASSERT_EQ(::kill(process, SIGCONT), 0);
    EXPECT_EQ(losses, QStringList());
    ASSERT_TRUE(eventually([this] { return came.size() == 2; })) << "it answers the ping";
    clock.advance(1s);
    EXPECT_EQ(losses, QStringList());

    ASSERT_EQ(::kill(process, SIGSTOP), 0);
    clock.standStill(1h);
    clock.advance(1s);
    EXPECT_EQ(losses, QStringList{u"hangs"_s});
}

TEST_F(HelperProcessTest, stays_while_it_is_at_work_or_kept_and_ends_by_the_end_of_its_input) {
    serve("cat >received; : >ended");
    helper->prepare(10s);
    const qint64 process = helper->processId();
    helper->keepFor(60s);
    helper->setAtWork(true);
    helper->allowSilence(1h);
    clock.advance(5min);
    helper->setAtWork(false);
    EXPECT_EQ(helper->processId(), process) << "it ends on the next turn only, for more may come in this one";
    helper->keepFor(60s);
    clock.advance(59s);
    EXPECT_EQ(helper->processId(), process);
    clock.advance(1s);
    EXPECT_EQ(helper->processId(), 0);
    EXPECT_TRUE(eventually([this] { return exists(u"ended"_s); }));
    EXPECT_EQ(losses, QStringList()) << "it did nothing wrong";

    serve("trap '' TERM; cat; exec sleep 100");
    helper->prepare(0s);
    const qint64 stubborn = helper->processId();
    clock.advance(0s);
    EXPECT_TRUE(lives(stubborn));
    clock.advance(5s);
    EXPECT_TRUE(eventually([&] { return !lives(stubborn); }))
        << "the end of its input is not enough for some";

    serve("exec sleep 100");
    helper->prepare(60s);
    const qint64 orphan = helper->processId();
    helper.reset();
    EXPECT_FALSE(lives(orphan));
}

TEST(Helpers, take_no_part_of_a_message_and_nothing_longer_for_one) {
    namespace http = http_protocol;
    namespace recogniser = recogniser_protocol;
    const http::Head head{"https://a.test/?b=%20", "a.test", {{"A", "1"}, {"A", ""}}, 1ms};
    const recogniser::RecognizeRequest image{
        u"/tmp/a b/ảnh.png"_s, {RecognitionRequest::Level::fast, false, QStringList{u"ja-JP"_s, u"vi-VN"_s}}};
    const recogniser::ObservationsReply twoLines{
        {{{0.25, 0.5, 0.125, 1.0}, {u"Xin chào"_s, u""_s}}, {{0, 0, 1, 1}, {}}}};
    const auto isHttp = [](const auto& bytes) { return http::decodeRequest(bytes).has_value(); };
    const auto isRequest = [](const auto& bytes) { return recogniser::decodeRequest(bytes).has_value(); };
    const auto isReply = [](const auto& bytes) { return recogniser::decodeReply(bytes).has_value(); };
    const std::pair<std::string, std::function<bool(const std::string&)>> messages[] = {
        {encode(http::Get{8, head, true}), isHttp}, {encode(http::Cancel{9}), isHttp},
        {encode(recogniser::Request(image)), isRequest}, {encode(recogniser::Reply(twoLines)), isReply}};
    for (const auto& [frame, passes] : messages) {
        frames::Reader reader(http::maximumRequest);
        reader.add(frame);
        const std::string whole = reader.next().value();
        EXPECT_TRUE(passes(whole));
        for (size_t size = 0; size < whole.size(); ++size)
            EXPECT_FALSE(passes(whole.substr(0, size))) << size;
        EXPECT_FALSE(passes(whole + 'x'));
    }
    EXPECT_FALSE(http::decodeReply("\t"));
    EXPECT_FALSE(isReply(std::string("\x7f")));
}

TEST(Helpers, serve_a_program_of_their_own_version_alone) {
    const QString own = QString::fromLatin1(serving::argument());
    for (const QString& program : {QStringLiteral(HTTP_PROGRAM), QStringLiteral(OCR_PROGRAM)}) {
        const auto endOf = [&program](const QStringList& arguments) {
            QProcess process;
            process.setStandardInputFile(QProcess::nullDevice());
            process.start(program, arguments);
            return process.waitForFinished() ? process.exitCode() : -1;
        };
        EXPECT_EQ(endOf({own}), 0);
        EXPECT_EQ(endOf({u"--serve=0.0.1"_s}), serving::otherVersion);
        EXPECT_EQ(endOf({u"--serve"_s}), serving::otherVersion);
        EXPECT_EQ(endOf({}), serving::startedByHand);
    }
}

}  // namespace
}  // namespace tralio
