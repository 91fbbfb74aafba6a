// What the program and tralio-http hear of each other, cut at odd places.

#include "fuzz/fuzz.h"
#include "platform/linux/helpers/frames.h"
#include "platform/linux/helpers/http_protocol.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tralio;
    frames::Reader reader(1 << 20);
    const QByteArray input = fuzz::bytes(data, size);
    for (qsizetype at = 0; at < input.size(); at += 61) {
        reader.add(input.mid(at, 61));
        while (const auto payload = reader.next()) {
            if (const auto request = http_protocol::decodeRequest(*payload))
                (void)http_protocol::encode(*request);
            if (const auto reply = http_protocol::decodeReply(*payload))
                (void)http_protocol::encode(*reply);
        }
    }
    return 0;
}
