// What the program and the recogniser hear of each other.

#include "fuzz/messages.h"
#include "platform/linux/helpers/recogniser_protocol.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tralio;
    using namespace recogniser_protocol;
    fuzz::readMessages(fuzz::bytes(data, size), [](const QByteArray& payload) {
        if (const auto request = decodeRequest(payload))
            (void)encode(*request);
        if (const auto reply = decodeReply(payload))
            (void)encode(*reply);
    });
    return 0;
}
