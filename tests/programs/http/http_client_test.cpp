#include <thread>

#include "engine/engine_test_support.h"
#include "engine/transport_error.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Delivery = StandInReply::Delivery;

class HttpClientTest : public testing::Test {
protected:
    QCoro::Task<QString> post(std::stop_token stop = {}) {
        const HttpRequest request{QUrl(standIn.baseURL())};
        QCoro::Task<HttpResponse> sending = client->send(request, "body", 45s, stop);
        const HttpResponse response = co_await sending;
        ++completions;
        co_return QString::fromUtf8(response.body);
    }

    void hold() { standIn.replies(StandInReply::withBody(200, "late").delivered(Delivery::held)); }

    [[nodiscard]] bool arrived(qsizetype count) {
        return eventually([this, count] { return standIn.requests().size() == count; });
    }

    FakeClock clock;
    StandInModel standIn;
    std::unique_ptr<HelperHttpClient> client =
        std::make_unique<HelperHttpClient>(QStringLiteral(HTTP_PROGRAM), clock);
    int completions = 0;
};

TEST_F(HttpClientTest, a_stop_request_aborts_the_request_and_drops_the_late_answer) {
    hold();
    std::stop_source stop;
    QCoro::Task<QString> task = post(stop.get_token());
    ASSERT_TRUE(arrived(1));
    const std::stop_token token = stop.get_token();
    std::thread([&stop] { stop.request_stop(); }).join();
    stop = std::stop_source();  // who cancels forgets the source at once
    EXPECT_EQ(outcomeOf(std::move(task)).text, TransportError::cancelled().errorDescription());
    EXPECT_TRUE(eventually([this] { return standIn.openConnections() == 0; }));
    standIn.sendTheRest();
    EXPECT_TRUE(outcomeOf(post(token)).failed);
    EXPECT_EQ(standIn.requests().size(), 1) << "a request that was cancelled beforehand went out";
    EXPECT_EQ(completions, 0);
}

TEST_F(HttpClientTest, an_answer_that_arrives_together_with_the_stop_request_is_dropped) {
    std::stop_source stop;
    QObject::connect(&standIn, &StandInModel::requestReceived, [&stop] { stop.request_stop(); });
    EXPECT_EQ(outcomeOf(post(stop.get_token())).text, TransportError::cancelled().errorDescription());
    EXPECT_EQ(completions, 0);
}

TEST_F(HttpClientTest, a_request_whose_caller_let_go_of_it_still_ends) {
    hold();
    { const QCoro::Task<QString> dropped = post(); }
    ASSERT_TRUE(arrived(1));
    standIn.sendTheRest();
    EXPECT_TRUE(eventually([this] { return completions == 1; }));
}

TEST_F(HttpClientTest, destroying_the_client_cancels_what_is_under_way) {
    hold();
    QCoro::Task<QString> connected = post();
    ASSERT_TRUE(arrived(1));
    QCoro::Task<QString> fresh = post();
    client.reset();
    EXPECT_EQ(outcomeOf(std::move(connected)).text, TransportError::cancelled().errorDescription());
    EXPECT_EQ(outcomeOf(std::move(fresh)).text, TransportError::cancelled().errorDescription());
}

TEST_F(HttpClientTest, who_awaits_a_reply_may_destroy_the_client) {
    const auto postAndDestroy = [this]() -> QCoro::Task<QString> {
        QCoro::Task<QString> posting = post();
        const QString text = co_await posting;
        client.reset();
        co_return text;
    };
    standIn.replies(StandInReply::withBody(200, "done"));
    EXPECT_EQ(outcomeOf(postAndDestroy()).text, u"done"_s);
}

}  // namespace
}  // namespace tralio
