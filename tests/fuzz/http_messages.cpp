// What the program and tralio-http hear of each other.

#include "fuzz/messages.h"
#include "platform/linux/helpers/http_protocol.h"

void tralio::fuzz::readInput(const QByteArray& input) {
    readMessages(input, http_protocol::decodeRequest, http_protocol::decodeReply);
}
