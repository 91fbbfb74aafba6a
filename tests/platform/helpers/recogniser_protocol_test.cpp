#include "platform/linux/helpers/recogniser_protocol.h"

#include "platform/linux/helpers/frames.h"
#include "support/testing.h"

namespace tralio::recogniser_protocol {
namespace {

QByteArray payloadOf(const QByteArray& frame) {
    frames::Reader reader(maximumRequest);
    reader.add(frame);
    return reader.next().value_or(QByteArray());
}

RecognizeRequest imageRequest() {
    return {QUrl::fromLocalFile(u"/tmp/a b/ảnh.png"_s),
        {RecognitionRequest::Level::fast, false, QStringList{u"ja-JP"_s, u"vi-VN"_s}}};
}

ObservationsReply twoLines() {
    return {{{{0.25, 0.5, 0.125, 1.0}, {u"Xin chào"_s, u""_s}}, {{0, 0, 1, 1}, {}}}};
}

TEST(HelperProtocol, messages_arrive_as_they_were_sent_however_the_bytes_are_cut) {
    const RecognizeRequest sent = imageRequest();
    const QByteArray stream =
        encode(Request(sent)) + encode(Request(RecognizeRequest{})) + encode(Request(LanguagesRequest{}));
    frames::Reader reader(maximumRequest);
    std::vector<Request> received;
    for (const char byte : stream) {
        reader.add(QByteArray(1, byte));
        while (const auto payload = reader.next()) {
            const auto request = decodeRequest(*payload);
            ASSERT_TRUE(request);
            received.push_back(*request);
        }
    }
    ASSERT_EQ(received.size(), 3U);
    EXPECT_EQ(std::get<RecognizeRequest>(received[0]).options, sent.options);
    EXPECT_EQ(std::get<RecognizeRequest>(received[0]).file, sent.file);
    EXPECT_EQ(std::get<RecognizeRequest>(received[1]).options, RecognitionRequest());
    EXPECT_TRUE(std::holds_alternative<LanguagesRequest>(received[2]));

    const auto reply = decodeReply(payloadOf(encode(Reply(twoLines()))));
    ASSERT_TRUE(reply);
    EXPECT_EQ(std::get<ObservationsReply>(*reply).observations, twoLines().observations);
}

TEST(HelperProtocol, a_message_cut_short_or_with_more_behind_it_is_none) {
    const QByteArray request = payloadOf(encode(Request(imageRequest())));
    const QByteArray reply = payloadOf(encode(Reply(twoLines())));
    ASSERT_TRUE(decodeRequest(request));
    ASSERT_TRUE(decodeReply(reply));
    for (qsizetype size = 0; size < request.size(); ++size)
        EXPECT_FALSE(decodeRequest(request.first(size))) << size;
    for (qsizetype size = 0; size < reply.size(); ++size)
        EXPECT_FALSE(decodeReply(reply.first(size))) << size;
    EXPECT_FALSE(decodeRequest(request + 'x'));
    EXPECT_FALSE(decodeReply(reply + 'x'));
    EXPECT_FALSE(decodeReply("\x7f"));
}

TEST(HelperProtocol, bytes_that_are_no_frame_break_the_stream_for_good) {
    const QByteArray frame = encode(Reply(NoImageReply{}));
    QByteArray huge = frame;
    huge[4] = '\x7f';
    for (const QByteArray& bytes : {QByteArray("Segmentation fault\n"), huge}) {
        frames::Reader reader(maximumReply);
        reader.add(frame + bytes);
        EXPECT_TRUE(reader.next());
        EXPECT_FALSE(reader.next());
        EXPECT_TRUE(reader.isBroken());
        reader.add(frame);
        EXPECT_FALSE(reader.next());
    }
}

}  // namespace
}  // namespace tralio::recogniser_protocol
