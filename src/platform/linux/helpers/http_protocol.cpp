#include "platform/linux/helpers/http_protocol.h"

#include "platform/linux/helpers/messages.h"

namespace tralio::http_protocol {

static void each(Head& head, auto fields) {
    fields(head.url, head.server, head.headers, head.idleTimeout);
}
static void each(Post& message, auto fields) {
    fields(message.id, message.head, message.body);
}
static void each(Get& message, auto fields) {
    fields(message.id, message.head, message.inPieces);
}
static void each(Cancel& message, auto fields) {
    fields(message.id);
}
static void each(Ping& /*message*/, auto /*fields*/) {}
static void each(Prepare& message, auto fields) {
    fields(message.url);
}
static void each(Pong& /*message*/, auto /*fields*/) {}
static void each(Piece& message, auto fields) {
    fields(message.id, message.bytes, message.totalSize);
}
static void each(Done& message, auto fields) {
    fields(message.id, message.status, message.body);
}
static void each(Failed& message, auto fields) {
    fields(message.id, message.description);
}

std::string encode(Request request) {
    return messages::encode(std::move(request));
}

std::string encode(Reply reply) {
    return messages::encode(std::move(reply));
}

std::optional<Request> decodeRequest(std::string_view payload) {
    return messages::decode<Request>(payload);
}

std::optional<Reply> decodeReply(std::string_view payload) {
    return messages::decode<Reply>(payload);
}

}  // namespace tralio::http_protocol
