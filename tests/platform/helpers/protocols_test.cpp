#include "platform/linux/helpers/frames.h"
#include "platform/linux/helpers/http_protocol.h"
#include "platform/linux/helpers/recogniser_protocol.h"
#include "support/testing.h"

namespace tralio {
namespace {

namespace http = http_protocol;
namespace recogniser = recogniser_protocol;

std::string payloadOf(const std::string& frame) {
    frames::Reader reader(std::max(http::maximumRequest, recogniser::maximumRequest));
    reader.add(frame);
    return reader.next().value_or(std::string());
}

recogniser::RecognizeRequest imageRequest() {
    return {
        u"/tmp/a b/ảnh.png"_s, {RecognitionRequest::Level::fast, false, QStringList{u"ja-JP"_s, u"vi-VN"_s}}};
}

recogniser::ObservationsReply twoLines() {
    return {{{{0.25, 0.5, 0.125, 1.0}, {u"Xin chào"_s, u""_s}}, {{0, 0, 1, 1}, {}}}};
}

TEST(HelperProtocol, messages_arrive_as_they_were_sent_however_the_bytes_are_cut) {
    const recogniser::RecognizeRequest sent = imageRequest();
    const std::string stream = encode(recogniser::Request(sent)) +
        encode(recogniser::Request(recogniser::RecognizeRequest{})) +
        encode(recogniser::Request(recogniser::LanguagesRequest{}));
    frames::Reader reader(recogniser::maximumRequest);
    std::vector<recogniser::Request> received;
    for (const char byte : stream) {
        reader.add({&byte, 1});
        while (const auto payload = reader.next())
            received.push_back(recogniser::decodeRequest(*payload).value());
    }
    ASSERT_EQ(received.size(), 3U);
    EXPECT_EQ(std::get<recogniser::RecognizeRequest>(received[0]).options, sent.options);
    EXPECT_EQ(std::get<recogniser::RecognizeRequest>(received[0]).file, sent.file);
    EXPECT_EQ(std::get<recogniser::RecognizeRequest>(received[1]).options, RecognitionRequest());
    EXPECT_TRUE(std::holds_alternative<recogniser::LanguagesRequest>(received[2]));

    const auto reply = recogniser::decodeReply(payloadOf(encode(recogniser::Reply(twoLines())))).value();
    EXPECT_EQ(std::get<recogniser::ObservationsReply>(reply).observations, twoLines().observations);
}

TEST(HelperProtocol, no_part_of_a_message_and_nothing_longer_passes_for_one) {
    const http::Head head{"https://a.test/?b=%20", "a.test", {{"A", "1"}, {"A", ""}}, 1ms};
    const auto isHttpRequest = [](const std::string& bytes) {
        return http::decodeRequest(bytes).has_value();
    };
    const auto isRequest = [](const std::string& bytes) {
        return recogniser::decodeRequest(bytes).has_value();
    };
    const auto isReply = [](const std::string& bytes) { return recogniser::decodeReply(bytes).has_value(); };
    const std::pair<std::string, std::function<bool(const std::string&)>> messages[] = {
        {encode(http::Get{8, head, true}), isHttpRequest},
        {encode(http::Cancel{9}), isHttpRequest},
        {encode(recogniser::Request(imageRequest())), isRequest},
        {encode(recogniser::Reply(twoLines())), isReply},
    };
    for (const auto& [frame, passes] : messages) {
        const std::string whole = payloadOf(frame);
        EXPECT_TRUE(passes(whole));
        for (size_t size = 0; size < whole.size(); ++size)
            EXPECT_FALSE(passes(whole.substr(0, size))) << size;
        EXPECT_FALSE(passes(whole + 'x'));
    }
    EXPECT_FALSE(http::decodeReply("\t"));
    EXPECT_FALSE(isReply("\x7f"));
}

TEST(HelperProtocol, bytes_that_are_no_frame_break_the_stream_for_good) {
    const std::string frame = encode(recogniser::Reply(recogniser::NoImageReply{}));
    std::string huge = frame;
    huge[7] = '\x7f';
    for (const std::string& bytes : {std::string("Segmentation fault\n"), huge}) {
        frames::Reader reader(recogniser::maximumReply);
        reader.add(frame + bytes);
        EXPECT_TRUE(reader.next());
        EXPECT_FALSE(reader.next());
        EXPECT_TRUE(reader.isBroken());
        reader.add(frame);
        EXPECT_FALSE(reader.next());
    }
}

}  // namespace
}  // namespace tralio
