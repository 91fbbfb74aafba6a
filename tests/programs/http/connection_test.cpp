#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include "programs/http/file_descriptor.h"
#include "programs/http/http_test_support.h"

namespace tralio {
namespace {

using Connection = RawServer::Connection;

TEST_F(HttpTest, a_connection_made_beforehand_serves_unless_anything_has_come_over_it) {
    std::atomic<int> spoiled = 0;
    const auto answer = [](Connection& peer) {
        if (!peer.readRequest().isEmpty())
            peer.send(reply("by " + QByteArray::number(peer.number)));
    };
    const std::pair<const char*, Script> cases[] = {{"ready", answer},
        {"spoke", [](Connection& peer) { peer.send(reply("nobody asked")); }},
        {"reset", [](Connection& peer) { peer.reset(); }}, {"ended", [](Connection&) {}}};
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
        (void)wordsOf(post(u"http:///"_s));
        EXPECT_EQ(wordsOf(post(urlOf(server))), isReady ? u"200 by 1"_s : u"200 by 2"_s) << what;
        EXPECT_EQ(wordsOf(post(urlOf(server))), isReady ? u"200 by 2"_s : u"200 by 3"_s) << what;
        EXPECT_EQ(server.posts(), 2) << what;
    }
}

/// Lets nobody in but one; the system knocks again after a second.
struct FullQueue {
    FullQueue() {
        const sockaddr_in address = loopback(port);
        if (connect(first.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
            qFatal("A test's queue cannot be filled.");
    }

    const FileDescriptor listener{socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)};
    const FileDescriptor first{socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)};
    const quint16 port = listenOnLoopback(listener.number(), 0);
};

TEST_F(HttpTest, a_connection_that_is_still_being_made_is_waited_for) {
    const FullQueue queue;
    const QString url = u"http://127.0.0.1:%1/v1"_s.arg(queue.port);
    client.prepare(QUrl(url));
    const auto knocking = [&] {
        const QByteArray peer = ":" + QByteArray::number(queue.port, 16).toUpper() + " 02 ";
        for (const QByteArray& line : contentOf(u"/proc/net/tcp"_s).split('\n'))
            if (line.contains(peer))
                return line.sliced(line.indexOf(':', line.indexOf(':') + 1) + 1, 4).toUInt(nullptr, 16);
        return 0U;
    };
    ASSERT_TRUE(eventually([&] { return knocking() != 0; }));
    const uint prepared = knocking();
    // The wait for it is part of the request's time without movement, and told like the rest of it.
    EXPECT_EQ(wordsOf(post(url, "text", Time(200))), timedOut(queue.port, Time(200)));
    QCoro::Task<HttpResponse> posted = post(url);
    QCoro::Task<HttpResponse> beside = post(url);  // has one of its own, and leaves that one alone
    (void)wordsOf(post(u"http:///"_s));            // answered after the texts were taken
    const FileDescriptor other(accept(queue.listener.number(), nullptr, nullptr));
    for (int peers = 0; peers < 2; ++peers) {  // whichever gets in first
        sockaddr_in address{};
        socklen_t size = sizeof address;
        const FileDescriptor peer(
            accept(queue.listener.number(), reinterpret_cast<sockaddr*>(&address), &size));
        char request[4096];
        ASSERT_GT(read(peer.number(), request, sizeof request), 0);
        const QByteArray answer = reply(ntohs(address.sin_port) == prepared ? "prepared" : "its own");
        ASSERT_EQ(write(peer.number(), answer.constData(), size_t(answer.size())), answer.size());
    }
    EXPECT_EQ(wordsOf(std::move(posted)), u"200 prepared"_s);
    EXPECT_EQ(wordsOf(std::move(beside)), u"200 its own"_s);
}

/// In a session of no desktop, the environment speaks for it.
struct HttpProxyTest : HttpTest {
    HttpProxyTest() {
        for (const char* name : {"XDG_CURRENT_DESKTOP", "DESKTOP_SESSION", "KDE_FULL_SESSION",
                 "GNOME_DESKTOP_SESSION_ID", "no_proxy"})
            qunsetenv(name);
    }
    ~HttpProxyTest() override { setProxy({}); }

    static void setProxy(const QByteArray& proxy) {
        qputenv("http_proxy", proxy);
        qputenv("https_proxy", proxy);
    }
    static QByteArray addressOf(const RawServer& server) {
        return "http://127.0.0.1:" + QByteArray::number(server.port());
    }
    /// What becomes of a text with that proxy; the process reads the settings when it starts.
    QString postBy(const QByteArray& proxy, const QString& url) {
        setProxy(proxy);
        HelperHttpClient fresh(QStringLiteral(HTTP_PROGRAM), clock);
        return wordsOf(fresh.send({QUrl(url)}, "text", 1s, {}));
    }

    const QByteArray closed = addressOf(RawServer([](Connection&) {}));
    const QString model = u"http://model.test/v1"_s;
    const QString secureModel = u"https://model.test/v1"_s;
};

TEST_F(HttpProxyTest, the_desktops_proxy_is_used_except_for_this_machine) {
    RawServer proxy([](Connection& peer) {
        const QByteArray request = peer.readRequest();
        peer.send(reply("by proxy: " + request.first(request.indexOf('\r'))));
    });
    RawServer server(answering(reply("direct")));
    EXPECT_EQ(postBy(addressOf(proxy), model), u"200 by proxy: POST http://model.test/v1 HTTP/1.1"_s);
    EXPECT_EQ(postBy(addressOf(proxy), urlOf(server)), u"200 direct"_s);
    EXPECT_EQ(postBy(addressOf(proxy), u"http://localhost:%1/"_s.arg(server.port())), u"200 direct"_s);

    client.prepare(QUrl(model));
    ASSERT_TRUE(eventually([&] { return proxy.connections() == 2; }));
    (void)wordsOf(post(u"http:///"_s));  // answered after the loop has turned once more
    EXPECT_TRUE(wordsOf(post(model)).startsWith(u"200 by proxy"_s));
    EXPECT_EQ(proxy.connections(), 2) << "the connection made beforehand leads to the proxy";
}

TEST_F(HttpProxyTest, what_is_wrong_with_the_proxy_is_not_the_servers_fault) {
    const QString breaks = u"proxy đã ngắt kết nối"_s;
    const QString login = u"proxy yêu cầu đăng nhập"_s;
    const QString unfit = u"Không thể kết nối qua máy chủ proxy"_s;
    const QString silent = u"proxy không phản hồi"_s;
    const QString server = u"model.test"_s;
    const auto saying = [](const QByteArray& bytes) {
        return [bytes](Connection& peer) {
            (void)peer.readRequest();
            peer.send(bytes);
            peer.waitForEnd();
        };
    };
    const std::tuple<Script, QString, QString> cases[] = {
        // and the words, by http and by https
        {answering({}), breaks, breaks},
        {[](Connection& peer) { peer.reset(); }, breaks, breaks},
        {answering("HTTP/1.1 407 Login\r\nContent-Length: 0\r\n\r\n"), login, login},
        // The latter breaks or does not fit, by libcurl's version.
        {answering("SSH-2.0-OpenSSH\r\n"), unfit, u"proxy"_s},
        {answering("HTTP/1.1 503 No\r\nContent-Length: 0\r\n\r\n"), u"503"_s, unfit},
        {answering("HTTP/1.1 502 Bad\r\nContent-Length: 0\r\n\r\n"), u"502"_s,
            u"proxy không kết nối được tới model.test"_s},
        {saying({}), server, silent},
        {saying("HTTP/1.1 407 Login\r\n\r\n and a page without an end"), server, login},
        {saying("HTTP/1.1 200 Connected\r\n\r\n"), server, server},
    };
    for (const auto& [script, plainWords, secureWords] : cases) {
        RawServer proxy(script);
        for (const bool isSecure : {false, true}) {
            const QString told = postBy(addressOf(proxy), isSecure ? secureModel : model);
            const QString& words = isSecure ? secureWords : plainWords;
            EXPECT_TRUE(told.contains(words)) << told.toStdString() << ", not " << words.toStdString();
        }
    }
    for (const QString& url : {model, secureModel}) {
        EXPECT_TRUE(postBy(closed, url).contains(u"proxy từ chối kết nối"_s));
        EXPECT_TRUE(postBy("http://no-such-host.invalid:1", url).contains(u"Không tìm thấy máy chủ proxy"_s));
    }
}

TEST_F(HttpProxyTest, a_proxy_of_socks_tells_what_it_did_not_reach_and_is_not_blamed_behind_it) {
    const auto socks = [](char outcome) {
        return [outcome](Connection& peer) {
            peer.send(QByteArray("\5\0\5", 3) + outcome + QByteArray("\0\1\0\0\0\0\0\0", 8));
            peer.waitForEnd();
        };
    };
    const QString named = u"m\u00f6bel.vn"_s;  // in the user's letters
    const QString unreached = u"proxy không kết nối được tới "_s + named;
    const std::pair<Script, QString> cases[] = {{socks(0), named + u" không phản hồi"_s},
        {socks(1), unreached}, {socks(4), unreached}, {socks(5), unreached},
        {socks(2), u"Không thể kết nối qua máy chủ proxy"_s},
        {[](Connection& peer) { peer.waitForEnd(); }, u"proxy không phản hồi"_s}};
    for (const auto& [script, words] : cases)
        for (const QString& scheme : {u"http://"_s, u"https://"_s}) {
            RawServer proxy(script);
            const QString told =
                postBy("socks5://127.0.0.1:" + QByteArray::number(proxy.port()), scheme + named);
            EXPECT_TRUE(told.contains(words)) << told.toStdString() << ", not " << words.toStdString();
        }
}

TEST_F(HttpProxyTest, of_several_the_first_that_is_reached_is_used) {
    RawServer proxy(answering(reply("by proxy")));
    qputenv("LD_LIBRARY_PATH", LISTED_PROXIES);
    qputenv("LISTED_PROXIES", closed + ' ' + closed + ' ' + addressOf(proxy));
    EXPECT_EQ(postBy({}, model), u"200 by proxy"_s);
    for (const QByteArray& none : {closed + " direct://", QByteArray()}) {
        qputenv("LISTED_PROXIES", none);
        EXPECT_TRUE(postBy({}, model).contains(u"Không tìm thấy máy chủ model.test"_s)) << "not by a proxy";
    }
    qputenv("LISTED_PROXIES", closed + ' ' + closed);
    EXPECT_TRUE(postBy({}, secureModel).contains(u"proxy từ chối kết nối"_s)) << "as of the last";
    qunsetenv("LD_LIBRARY_PATH");
}

TEST_F(HttpProxyTest, a_script_that_never_comes_costs_a_request_its_time_and_holds_up_no_other) {
    RawServer scripts([](Connection& peer) { peer.waitForEnd(); });
    RawServer server(answering(reply("direct")));
    setProxy("pac+" + addressOf(scripts) + "/proxy.pac");
    for (int asked = 1; asked <= 2; ++asked) {
        QCoro::Task<HttpResponse> held = post(model, "text", Time(1000));
        ASSERT_TRUE(eventually([&] { return scripts.connections() >= asked; }));
        EXPECT_EQ(wordsOf(post(urlOf(server))), u"200 direct"_s);
        EXPECT_FALSE(held.isReady());
        EXPECT_EQ(wordsOf(std::move(held)), QString::fromUtf8(unknownProxyWords)) << asked;
    }
}

}  // namespace
}  // namespace tralio
