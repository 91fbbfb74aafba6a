// What the program and the recogniser hear of each other.

#include "fuzz/messages.h"
#include "platform/linux/helpers/recogniser_protocol.h"

void tralio::fuzz::readInput(const QByteArray& input) {
    readMessages(input, recogniser_protocol::decodeRequest, recogniser_protocol::decodeReply);
}
