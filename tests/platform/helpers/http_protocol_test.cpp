#include "platform/linux/helpers/http_protocol.h"

#include <gmock/gmock.h>

#include "platform/linux/helpers/frames.h"
#include "support/print_to.h"

namespace tralio::http_protocol {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

QByteArray payloadOf(const QByteArray& frame) {
    frames::Reader reader(maximumRequest);
    reader.add(frame);
    return reader.next().value_or(QByteArray());
}

TEST(HttpProtocol, messages_arrive_with_every_field_and_no_part_of_one_passes_for_a_message) {
    const HttpRequest request{QUrl(u"https://a.test/ă?b=%20#c"_s), {{"A", "1"}, {"A", ""}}};
    const auto post = decodeRequest(payloadOf(encode(Post{7, request, 45s, "{\"ă\":1}"})));
    ASSERT_TRUE(post && std::holds_alternative<Post>(*post));
    const Post& received = std::get<Post>(*post);
    EXPECT_EQ(received.id, 7U);
    EXPECT_EQ(received.request.url, request.url);
    EXPECT_EQ(received.request.headers, request.headers);
    EXPECT_EQ(received.idleTimeout, 45s);
    EXPECT_EQ(received.body, "{\"ă\":1}");
    const auto get = decodeRequest(payloadOf(encode(Get{8, request, 1ms, true})));
    ASSERT_TRUE(get && std::holds_alternative<Get>(*get));
    EXPECT_TRUE(std::get<Get>(*get).inPieces);

    const auto piece = decodeReply(payloadOf(encode(Piece{1, QByteArray("\0x", 2), std::nullopt})));
    ASSERT_TRUE(piece && std::holds_alternative<Piece>(*piece));
    EXPECT_EQ(std::get<Piece>(*piece).bytes, QByteArray("\0x", 2));
    EXPECT_EQ(std::get<Piece>(*piece).totalSize, std::nullopt);
    const auto done = decodeReply(payloadOf(encode(Done{2, {404, "gone"}})));
    ASSERT_TRUE(done && std::holds_alternative<Done>(*done));
    EXPECT_EQ(std::get<Done>(*done).response.status, 404);

    for (const QByteArray& whole :
        {payloadOf(encode(Get{8, request, 1ms, true})), payloadOf(encode(Cancel{9}))}) {
        for (qsizetype size = 0; size < whole.size(); ++size)
            EXPECT_FALSE(decodeRequest(whole.first(size))) << size;
        EXPECT_FALSE(decodeRequest(whole + 'x'));
    }
    EXPECT_FALSE(decodeReply(QByteArray(1, 9)));
}

}  // namespace
}  // namespace tralio::http_protocol
