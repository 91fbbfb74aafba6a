#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include "programs/http/file_descriptor.h"
#include "programs/http/http_test_support.h"
#include "support/files.h"

namespace tralio {
namespace {

using Connection = RawServer::Connection;

TEST_F(HttpTest, a_connection_made_beforehand_serves_unless_anything_has_come_over_it) {
    std::atomic<int> spoiled = 0;
    const auto answer = [](Connection& peer) {
        if (!peer.readRequest().isEmpty())
            peer.send(reply("by " + QByteArray::number(peer.number)));
    };
    const std::pair<const char*, Script> cases[] = {
        {"ready", answer},
        {"spoke", [](Connection& peer) { peer.send(reply("nobody asked")); }},
        {"reset", [](Connection& peer) { peer.reset(); }},
        {"ended", [](Connection&) {}},
    };
    for (const auto& [what, first] : cases) {
        const bool isReady = QByteArray(what) == "ready";
        RawServer server([&, first = first](Connection& peer) {
            if (peer.number > 1 || isReady)
                return answer(peer);
            first(peer);
            ++spoiled;
            if (QByteArray(what) == "spoke")
                peer.waitForEnd();
        });
        const int before = spoiled;
        client.prepare(QUrl(urlOf(server)));
        ASSERT_TRUE(eventually([&] { return server.connections() == 1 && (isReady || spoiled > before); }));
        // Answered after the loop has turned once more, and the socket seen the end.
        (void)outcomeOf(post(u"http:///"_s));
        EXPECT_EQ(outcomeOf(post(urlOf(server))).text, isReady ? u"200 by 1"_s : u"200 by 2"_s) << what;
        EXPECT_EQ(outcomeOf(post(urlOf(server))).text, isReady ? u"200 by 2"_s : u"200 by 3"_s) << what;
        EXPECT_EQ(server.posts(), 2) << what;
    }
}

TEST_F(HttpTest, a_connection_that_is_still_being_made_is_waited_for) {
    // A full queue lets nobody in; the system knocks again after a second.
    const FileDescriptor listener(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const place = reinterpret_cast<sockaddr*>(&address);
    ASSERT_EQ(bind(listener.number(), place, size), 0);
    ASSERT_EQ(listen(listener.number(), 0), 0);
    ASSERT_EQ(getsockname(listener.number(), place, &size), 0);
    const FileDescriptor first(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    ASSERT_EQ(connect(first.number(), place, size), 0);

    const QString url = u"http://127.0.0.1:%1/v1"_s.arg(ntohs(address.sin_port));
    client.prepare(QUrl(url));
    const auto knocking = [&] {
        const QByteArray peer = ":" + QByteArray::number(ntohs(address.sin_port), 16).toUpper() + " 02 ";
        for (const QByteArray& line : contentOf(u"/proc/net/tcp"_s).split('\n'))
            if (line.contains(peer))
                return line.sliced(line.indexOf(':', line.indexOf(':') + 1) + 1, 4).toUInt(nullptr, 16);
        return 0U;
    };
    ASSERT_TRUE(eventually([&] { return knocking() != 0; }));
    const uint prepared = knocking();
    // The wait for it is part of the request's time without movement, and told like the rest of it.
    EXPECT_EQ(outcomeOf(post(url, "text", Time(200))).text,
        TransportError::timedOut(QUrl(url), Time(200)).errorDescription());
    QCoro::Task<QString> posted = post(url);
    (void)outcomeOf(post(u"http:///"_s));  // answered after the text was taken
    const FileDescriptor other(accept(listener.number(), nullptr, nullptr));
    const FileDescriptor peer(accept(listener.number(), place, &size));
    EXPECT_EQ(ntohs(address.sin_port), prepared);
    char request[4096];
    ASSERT_GT(read(peer.number(), request, sizeof request), 0);
    const QByteArray answer = reply("in time");
    ASSERT_EQ(write(peer.number(), answer.constData(), size_t(answer.size())), answer.size());
    EXPECT_EQ(outcomeOf(std::move(posted)).text, u"200 in time"_s);
}

}  // namespace
}  // namespace tralio
