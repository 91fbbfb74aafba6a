#include "platform/linux/helpers/http_protocol.h"

#include "platform/linux/helpers/frames.h"
#include "support/testing.h"

namespace tralio::http_protocol {
namespace {

QByteArray payloadOf(const QByteArray& frame) {
    frames::Reader reader(maximumRequest);
    reader.add(frame);
    return reader.next().value_or(QByteArray());
}

TEST(HttpProtocol, no_part_of_a_message_and_nothing_longer_passes_for_one) {
    const HttpRequest request{QUrl(u"https://a.test/ă?b=%20#c"_s), {{"A", "1"}, {"A", ""}}};
    for (const QByteArray& whole :
        {payloadOf(encode(Get{8, request, 1ms, true})), payloadOf(encode(Cancel{9}))}) {
        EXPECT_TRUE(decodeRequest(whole));
        for (qsizetype size = 0; size < whole.size(); ++size)
            EXPECT_FALSE(decodeRequest(whole.first(size))) << size;
        EXPECT_FALSE(decodeRequest(whole + 'x'));
    }
    EXPECT_FALSE(decodeReply(QByteArray(1, 9)));
}

}  // namespace
}  // namespace tralio::http_protocol
