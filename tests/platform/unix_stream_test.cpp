#include "platform/linux/speech/unix_stream.h"

#include <QLocalServer>
#include <QLocalSocket>

#include <csignal>

#include "support/testing.h"

namespace tralio {
namespace {

/// A stream that notes what it tells.
struct WatchedStream {
    explicit WatchedStream(const QString& path) : stream(path) {
        QObject::connect(
            &stream, &UnixStream::opened, [this] { told << u"opened"_s; });
        QObject::connect(
            &stream, &UnixStream::arrived,
            [this](const QByteArray& bytes) { told << u"arrived "_s + QString::fromUtf8(bytes); });
        QObject::connect(
            &stream, &UnixStream::ended, [this](const QString& reason) { told << u"ended: "_s + reason; });
    }

    QStringList told;
    UnixStream stream;
};

struct SpeechStream : testing::Test {
    /// The other side of the next connection, which is made without a turn of the event loop.
    [[nodiscard]] QLocalSocket* accept() {
        return server.waitForNewConnection(20'000) ? server.nextPendingConnection() : nullptr;
    }

    QTemporaryDir folder;
    QString path = folder.filePath(u"s.sock"_s);
    QLocalServer server;
};

TEST_F(SpeechStream, a_listener_that_accepts_nobody_holds_nobody_up_nor_does_a_name_that_is_too_long) {
    server.setListenBacklogSize(1);
    ASSERT_TRUE(server.listen(path));
    // All of them connect in one turn, in which the server accepts none.
    std::vector<std::unique_ptr<WatchedStream>> crowd;
    for (int i = 0; i < 4; ++i)
        crowd.push_back(std::make_unique<WatchedStream>(path));
    WatchedStream nowhere(path.repeated(9));
    EXPECT_TRUE(nextTurn());
    EXPECT_THAT(nowhere.told, ElementsAre(u"ended: File name too long"_s));
    EXPECT_THAT(crowd.front()->told, ElementsAre(u"opened"_s));
    EXPECT_THAT(crowd.back()->told, ElementsAre(u"ended: Resource temporarily unavailable"_s));
}

TEST_F(SpeechStream, what_the_other_side_said_before_it_left_is_heard_and_writing_to_it_raises_no_signal) {
    ASSERT_TRUE(server.listen(path));
    WatchedStream watched(path);
    EXPECT_TRUE(nextTurn());
    QLocalSocket* other = accept();
    ASSERT_NE(other, nullptr);
    other->write("bye");
    other->flush();
    other->abort();
    auto* const before = std::signal(SIGPIPE, SIG_DFL);
    watched.stream.write("late");
    std::signal(SIGPIPE, before);
    EXPECT_TRUE(eventually([&] { return !watched.stream.isOpen(); }));
    EXPECT_TRUE(nextTurn() && nextTurn());
    EXPECT_THAT(watched.told,
        ElementsAre(u"opened"_s, u"arrived bye"_s, u"ended: the other side has closed the connection"_s));
}

}  // namespace
}  // namespace tralio
