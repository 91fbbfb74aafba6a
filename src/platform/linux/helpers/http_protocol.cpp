#include "platform/linux/helpers/http_protocol.h"

#include "platform/linux/helpers/messages.h"

namespace tralio {

static QDataStream& operator<<(QDataStream& stream, const HttpRequest& request) {
    stream << request.url << static_cast<quint32>(request.headers.size());
    for (const auto& [name, value] : request.headers)
        stream << name << value;
    return stream;
}

static QDataStream& operator>>(QDataStream& stream, HttpRequest& request) {
    quint32 count = 0;
    stream >> request.url >> count;
    for (quint32 i = 0; i < count && stream.status() == QDataStream::Ok; ++i) {
        auto& [name, value] = request.headers.emplaceBack();
        stream >> name >> value;
    }
    return stream;
}

namespace http_protocol {

template <typename Fields>
static void each(Post& message, Fields fields) {
    fields(message.id, message.request, message.idleTimeout, message.body);
}
template <typename Fields>
static void each(Get& message, Fields fields) {
    fields(message.id, message.request, message.idleTimeout, message.inPieces);
}
template <typename Fields>
static void each(Cancel& message, Fields fields) {
    fields(message.id);
}
template <typename Fields>
static void each(Ping& /*message*/, Fields /*fields*/) {}
template <typename Fields>
static void each(Prepare& message, Fields fields) {
    fields(message.url);
}
template <typename Fields>
static void each(Pong& /*message*/, Fields /*fields*/) {}
template <typename Fields>
static void each(Piece& message, Fields fields) {
    fields(message.id, message.bytes, message.totalSize);
}
template <typename Fields>
static void each(Done& message, Fields fields) {
    fields(message.id, message.response.status, message.response.body);
}
template <typename Fields>
static void each(Failed& message, Fields fields) {
    fields(message.id, message.description);
}

QByteArray encode(const Request& request) {
    return messages::encode(request);
}

QByteArray encode(const Reply& reply) {
    return messages::encode(reply);
}

std::optional<Request> decodeRequest(const QByteArray& payload) {
    return messages::decode<Request>(payload);
}

std::optional<Reply> decodeReply(const QByteArray& payload) {
    return messages::decode<Reply>(payload);
}

}  // namespace http_protocol
}  // namespace tralio
