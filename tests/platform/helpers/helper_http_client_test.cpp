#include "platform/linux/helpers/helper_http_client.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <csignal>

#include "engine/engine_test_support.h"
#include "engine/transport_error.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Delivery = StandInReply::Delivery;

/// Everything real but the server and the time after which the process is no longer needed.
class HelperHttpClientTest : public testing::Test {
protected:
    QCoro::Task<QString> post(std::stop_token stop = {}, std::chrono::milliseconds idleTimeout = 30s) {
        const HttpRequest request{QUrl(standIn.baseURL()), {{"Content-Type", "text/plain"}}};
        QCoro::Task<HttpResponse> sending = client->send(request, body, idleTimeout, stop);
        const HttpResponse response = co_await sending;
        co_return u"%1 "_s.arg(*response.status) + QString::fromUtf8(response.body);
    }
    QCoro::Task<QString> download(HttpClient::Receive receive) {
        QCoro::Task<HttpResponse> loading =
            client->download({QUrl(standIn.baseURL())}, std::move(receive), 30s, {});
        co_await loading;
        co_return u"done"_s;
    }
    QCoro::Task<QString> get() {
        QCoro::Task<HttpResponse> getting = client->get({QUrl(standIn.baseURL())}, 30s, {});
        const HttpResponse response = co_await getting;
        co_return QString::fromUtf8(response.body);
    }

    void hold() { standIn.replies(StandInReply::withBody(200, "late").delivered(Delivery::held)); }
    [[nodiscard]] bool arrived(qsizetype count) {
        return eventually([this, count] { return standIn.requests().size() == count; });
    }
    /// The process that serves now; null when none does, however it ended.
    [[nodiscard]] QProcess* helper() const {
        const auto helpers = client->findChildren<QProcess*>();
        return helpers.isEmpty() ? nullptr : helpers.last();
    }

    /// A program in the helper's place.
    QString script(const QByteArray& commands) {
        QFile file(m_folder.filePath(u"helper"_s));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("#!/bin/sh\n" + commands + "\n");
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return file.fileName();
    }

    FakeClock clock;
    StandInModel standIn;
    QByteArray body = "body";
    std::unique_ptr<HelperHttpClient> client =
        std::make_unique<HelperHttpClient>(QStringLiteral(HTTP_PROGRAM), clock);

private:
    QTemporaryDir m_folder;
};

TEST_F(HelperHttpClientTest, brings_replies_of_any_status_and_errors_in_their_words) {
    standIn.replies(StandInReply::withBody(404, "ă"));
    EXPECT_EQ(outcomeOf(post()).text, u"404 ă"_s);
    EXPECT_EQ(standIn.requests().last().method, "POST");
    EXPECT_EQ(standIn.requests().last().header("Content-Type"), "text/plain");
    EXPECT_EQ(standIn.requests().last().body, "body");
    EXPECT_EQ(outcomeOf(get()).text, u"ă"_s);

    hold();
    EXPECT_EQ(outcomeOf(post({}, 20ms)).text,
        TransportError::timedOut(QUrl(standIn.baseURL()), 20ms).errorDescription());
    standIn.refuseConnections();
    const Outcome refused = outcomeOf(post());
    EXPECT_TRUE(refused.failed && refused.text.contains(u"kết nối bị từ chối"_s))
        << refused.text.toStdString();
}

TEST_F(HelperHttpClientTest, serves_requests_side_by_side_and_cancels_one_of_them_at_the_server_too) {
    hold();
    std::stop_source stop;
    QCoro::Task<QString> cancelled = post(stop.get_token());
    QCoro::Task<QString> kept = post();
    ASSERT_TRUE(arrived(2));
    stop.request_stop();
    EXPECT_EQ(outcomeOf(std::move(cancelled)).text, TransportError::cancelled().errorDescription());
    EXPECT_TRUE(eventually([this] { return standIn.openConnections() == 1; }));
    standIn.replies(StandInReply::withBody(200, "x"));
    for (int i = 0; i < 5; ++i) {
        clock.advance(5s);
        EXPECT_EQ(outcomeOf(get()).text, u"x"_s);
    }
    body = QByteArray(64 * 1024 * 1024, 'x');
    EXPECT_EQ(outcomeOf(post()).text, u"Nội dung cần gửi quá lớn (hơn 64 MB)."_s);
    EXPECT_FALSE(kept.isReady()) << "a process that answers may take its time";
    standIn.sendTheRest();
    EXPECT_EQ(outcomeOf(std::move(kept)).text, u"200 late"_s);
}

TEST_F(HelperHttpClientTest, a_body_comes_in_pieces_until_who_takes_them_fails) {
    int pieces = 0;
    const auto fails = [&pieces](const QByteArray&, std::optional<qint64>) {
        ++pieces;
        throw LocalizedError(u"Hết chỗ."_s);
    };
    standIn.replies(StandInReply::withBody(200, "x").delivered(Delivery::endless));
    EXPECT_EQ(outcomeOf(download(fails)).text, u"Hết chỗ."_s);
    EXPECT_TRUE(eventually([this] { return standIn.openConnections() == 0; }));
    EXPECT_EQ(pieces, 1);

    const QByteArray whole(5'000'000, 'b');
    standIn.replies(StandInReply::withBody(200, whole));
    QByteArray received;
    const auto receive = [&](const QByteArray& piece, std::optional<qint64> totalSize) {
        received += piece;
        EXPECT_EQ(totalSize, whole.size());
    };
    EXPECT_EQ(outcomeOf(download(receive)).text, u"done"_s);
    EXPECT_TRUE(received == whole);
}

TEST_F(
    HelperHttpClientTest, the_process_stays_a_minute_for_the_next_text_and_goes_at_once_after_anything_else) {
    standIn.replies(StandInReply::withBody(200, "x"));
    EXPECT_EQ(helper(), nullptr);
    (void)outcomeOf(get());
    clock.advance(0s);
    EXPECT_TRUE(eventually([this] { return !helper(); }));

    (void)outcomeOf(post());
    const QProcess* first = helper();
    clock.advance(59s);
    (void)outcomeOf(post());
    (void)outcomeOf(get());
    client->prepare();
    clock.advance(59s);
    EXPECT_EQ(helper(), first);
    EXPECT_EQ(standIn.openConnections(), 1) << "the second request needs no connection of its own";
    clock.advance(1s);
    EXPECT_TRUE(eventually([this] { return !helper(); }));

    client->prepare();
    EXPECT_NE(helper(), nullptr);
    clock.advance(10s);
    EXPECT_TRUE(eventually([this] { return !helper(); }));
}

TEST_F(HelperHttpClientTest, whatever_becomes_of_the_process_a_request_ends_and_the_next_one_is_served) {
    hold();
    QCoro::Task<QString> first = post();
    ASSERT_TRUE(arrived(1));
    ASSERT_EQ(::kill(static_cast<pid_t>(helper()->processId()), SIGKILL), 0);
    EXPECT_EQ(
        outcomeOf(std::move(first)).text, u"Tiến trình kết nối mạng dừng đột ngột. Vui lòng thử lại."_s);
    standIn.replies(StandInReply::withBody(200, "x"));
    EXPECT_EQ(outcomeOf(post()).text, u"200 x"_s);

    QCoro::Task<QString> abandoned = post();
    client = std::make_unique<HelperHttpClient>(
        script("head -c 8 >/dev/null; echo garbage; exec sleep 100"), clock);
    EXPECT_EQ(outcomeOf(std::move(abandoned)).text, TransportError::cancelled().errorDescription());
    EXPECT_EQ(outcomeOf(post()).text, u"Tiến trình kết nối mạng trả lời không hợp lệ."_s);
    client = std::make_unique<HelperHttpClient>(script("exec sleep 100"), clock);
    QCoro::Task<QString> hanging = post();
    clock.advance(19s);
    EXPECT_FALSE(hanging.isReady());
    clock.advance(1s);
    EXPECT_EQ(outcomeOf(std::move(hanging)).text,
        u"Tiến trình kết nối mạng không phản hồi. Vui lòng kiểm tra lại cài đặt proxy của máy."_s);
    EXPECT_TRUE(eventually([this] { return !helper(); }));
    client = std::make_unique<HelperHttpClient>(u"/nowhere/at-all"_s, clock);
    EXPECT_EQ(outcomeOf(post()).text, u"Không thể khởi động tiến trình kết nối mạng."_s);
}

}  // namespace
}  // namespace tralio
