
#include <csignal>
#include <thread>

#include "engine/engine_test_support.h"
#include "engine/transport_error.h"
#include "platform/linux/helpers/serving.h"
#include "support/process_limits.h"

namespace tralio {
namespace {

/// Everything real but the server and the time after which the process is no longer needed.
struct HelperHttpClientTest : testing::Test {
    QCoro::Task<HttpResponse> post(std::stop_token stop = {}) {
        QCoro::Task<HttpResponse> sending = client->send({QUrl(standIn.baseURL())}, body, 30s, stop);
        const HttpResponse response = co_await sending;
        ++completions;
        co_return response;
    }
    QCoro::Task<HttpResponse> get() { return client->get({QUrl(standIn.baseURL())}, 30s, {}); }

    void hold() {
        standIn.replies(StandInReply::withBody(200, "late").delivered(StandInReply::Delivery::held));
    }
    [[nodiscard]] bool arrived(qsizetype count) {
        return eventually([this, count] { return standIn.requests().size() == count; });
    }

    const QString cancelled = TransportError::cancelled().errorDescription();
    FakeClock clock;
    StandInModel standIn;
    QByteArray body = "body";
    std::unique_ptr<HelperHttpClient> client =
        std::make_unique<HelperHttpClient>(QStringLiteral(HTTP_PROGRAM), clock);
    int completions = 0;
};

TEST_F(HelperHttpClientTest, serves_seven_requests_side_by_side_and_cancels_one_of_them_at_the_server_too) {
    hold();
    std::stop_source stop;
    QCoro::Task<HttpResponse> stopped = post(stop.get_token());
    std::vector<QCoro::Task<HttpResponse>> kept;
    while (kept.size() < 6)
        kept.push_back(post());
    ASSERT_TRUE(arrived(7));
    stop.request_stop();
    EXPECT_EQ(wordsOf(std::move(stopped)), cancelled);
    EXPECT_TRUE(eventually([this] { return standIn.openConnections() == 6; }));
    standIn.replies(StandInReply::withBody(200, "x"));
    for (int i = 0; i < 5; ++i) {
        clock.advance(5s);
        EXPECT_EQ(wordsOf(get()), u"200 x"_s);
    }
    body = QByteArray(64 * 1024 * 1024, 'x');
    EXPECT_EQ(wordsOf(post()), u"Nội dung cần gửi quá lớn (hơn 64 MB)."_s);
    EXPECT_FALSE(kept.front().isReady()) << "a process that answers may take its time";
    standIn.sendTheRest();
    for (QCoro::Task<HttpResponse>& each : kept)
        EXPECT_EQ(wordsOf(std::move(each)), u"200 late"_s);
}

TEST_F(HelperHttpClientTest,
    a_slow_server_is_waited_for_and_a_process_that_hangs_is_given_up_after_ten_seconds) {
    hold();
    const auto slow = started(post());
    ASSERT_TRUE(arrived(1));
    for (int i = 0; i < 15; ++i) {
        const qsizetype before = clock.scheduled();
        clock.advance(2s);
        ASSERT_TRUE(eventually([&] { return clock.scheduled() > before; })) << "it answers no ping";
    }
    EXPECT_EQ(slow->times, 0);
    ASSERT_EQ(::kill(static_cast<pid_t>(client->helperProcessId()), SIGSTOP), 0);
    clock.advance(9'999ms);
    EXPECT_NE(client->helperProcessId(), 0);
    clock.advance(1ms);
    EXPECT_EQ(client->helperProcessId(), 0);
    EXPECT_TRUE(eventually([&] { return slow->times > 0; }));
    EXPECT_EQ(slow->failure, u"Tiến trình kết nối mạng không phản hồi. Vui lòng thử lại."_s);
}

TEST_F(HelperHttpClientTest, a_body_comes_in_pieces_until_who_takes_them_fails) {
    int pieces = 0;
    const auto fails = [&pieces](const QByteArray&, std::optional<qint64>) {
        ++pieces;
        throw LocalizedError(u"Hết chỗ."_s);
    };
    standIn.replies(StandInReply::withBody(200, QByteArray(50'000'000, 'x')));
    EXPECT_EQ(endingOf(client->download({QUrl(standIn.baseURL())}, fails, 30s, {})).failure, u"Hết chỗ."_s);
    EXPECT_TRUE(eventually([this] { return standIn.openConnections() == 0; }));
    EXPECT_EQ(pieces, 1);
}

TEST_F(HelperHttpClientTest, the_process_stays_a_minute_for_the_next_text_and_goes_after_anything_else) {
    const auto isGone = [this] { return client->helperProcessId() == 0; };
    standIn.replies(StandInReply::withBody(200, "x"));
    EXPECT_TRUE(isGone());
    (void)wordsOf(get());
    clock.advance(0s);
    EXPECT_TRUE(isGone());

    (void)wordsOf(post());
    const qint64 first = client->helperProcessId();
    EXPECT_TRUE(dumpsNoCore(first)) << "the key is in its memory";
    clock.advance(59s);
    (void)wordsOf(post());
    (void)wordsOf(get());
    client->prepare(QUrl());
    clock.advance(59s);
    EXPECT_EQ(client->helperProcessId(), first);
    clock.advance(1s);
    EXPECT_TRUE(isGone());

    client->prepare(QUrl());
    EXPECT_FALSE(isGone());
    clock.advance(10s);
    EXPECT_TRUE(isGone());
}

TEST(HttpProgram, hides_its_memory_from_the_other_programs_of_its_user) {
    QProcess program;
    program.setChildProcessModifier([] { const OrdinaryProcess ordinary; });
    program.start(QStringLiteral(HTTP_PROGRAM), {QString::fromLatin1(serving::argument())});
    program.write(QByteArray::fromStdString(encode(http_protocol::Ping{})));
    ASSERT_TRUE(eventually([&program] { return program.bytesAvailable() > 0; })) << "it does not serve";
    // The kernel gives what it tells of such a process to root.
    EXPECT_EQ(QFileInfo(u"/proc/%1/environ"_s.arg(program.processId())).ownerId(), 0U);
    program.closeWriteChannel();
    EXPECT_TRUE(eventually([&program] { return program.state() == QProcess::NotRunning; }));
}

TEST_F(HelperHttpClientTest, whatever_becomes_of_the_process_a_request_ends_and_the_next_one_is_served) {
    hold();
    QCoro::Task<HttpResponse> first = post();
    QCoro::Task<HttpResponse> second = post();
    ASSERT_TRUE(arrived(2));
    ASSERT_EQ(::kill(static_cast<pid_t>(client->helperProcessId()), SIGKILL), 0);
    const QString ended = u"Tiến trình kết nối mạng dừng đột ngột. Vui lòng thử lại."_s;
    EXPECT_EQ(wordsOf(std::move(first)), ended);
    EXPECT_EQ(wordsOf(std::move(second)), ended);
    standIn.replies(StandInReply::withBody(200, "x"));
    EXPECT_EQ(wordsOf(post()), u"200 x"_s);
    EXPECT_EQ(standIn.requests().size(), 3) << "nothing is sent again";

    hold();
    QCoro::Task<HttpResponse> connected = post();
    ASSERT_TRUE(arrived(4));
    QCoro::Task<HttpResponse> fresh = post();
    client.reset();
    for (QCoro::Task<HttpResponse>* abandoned : {&connected, &fresh})
        EXPECT_EQ(wordsOf(std::move(*abandoned)), cancelled);
}

TEST_F(HelperHttpClientTest, a_stop_request_aborts_the_request_and_drops_the_late_answer) {
    hold();
    std::stop_source stop;
    QCoro::Task<HttpResponse> task = post(stop.get_token());
    ASSERT_TRUE(arrived(1));
    const std::stop_token token = stop.get_token();
    std::thread([&stop] { stop.request_stop(); }).join();
    stop = std::stop_source();  // who cancels forgets the source at once
    EXPECT_EQ(wordsOf(std::move(task)), cancelled);
    EXPECT_TRUE(eventually([this] { return standIn.openConnections() == 0; }));
    standIn.sendTheRest();
    EXPECT_FALSE(endingOf(post(token)).result);

    // The answer may arrive together with the stop request.
    std::stop_source together;
    QObject::connect(&standIn, &StandInModel::requestReceived, [&together] { together.request_stop(); });
    standIn.replies(StandInReply::withBody(200, "x"));
    EXPECT_EQ(wordsOf(post(together.get_token())), cancelled);
    EXPECT_EQ(completions, 0);
    EXPECT_EQ(standIn.requests().size(), 2) << "a request that was cancelled beforehand went out";
}

TEST_F(HelperHttpClientTest, a_request_that_is_let_go_of_still_ends_and_who_awaits_it_may_end_the_client) {
    hold();
    { const QCoro::Task<HttpResponse> dropped = post(); }
    ASSERT_TRUE(arrived(1));
    standIn.sendTheRest();
    EXPECT_TRUE(eventually([this] { return completions == 1; }));

    const auto postAndDestroy = [this]() -> QCoro::Task<HttpResponse> {
        QCoro::Task<HttpResponse> posting = post();
        const HttpResponse response = co_await posting;
        client.reset();
        co_return response;
    };
    standIn.replies(StandInReply::withBody(200, "done"));
    EXPECT_EQ(wordsOf(postAndDestroy()), u"200 done"_s);
}

}  // namespace
}  // namespace tralio
