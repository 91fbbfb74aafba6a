#include "platform/linux/helpers/http_protocol.h"

#include "platform/linux/helpers/frames.h"

namespace tralio::http_protocol {
namespace {

template <typename Value>
QDataStream& operator<<(QDataStream& stream, const std::optional<Value>& value) {
    stream << value.has_value();
    return value ? stream << *value : stream;
}

template <typename Value>
QDataStream& operator>>(QDataStream& stream, std::optional<Value>& value) {
    bool present = false;
    stream >> present;
    if (present)
        stream >> value.emplace();
    return stream;
}

QDataStream& operator<<(QDataStream& stream, std::chrono::milliseconds duration) {
    return stream << qint64{duration.count()};
}

QDataStream& operator>>(QDataStream& stream, std::chrono::milliseconds& duration) {
    qint64 count = 0;
    stream >> count;
    duration = std::chrono::milliseconds(count);
    return stream;
}

QDataStream& operator<<(QDataStream& stream, const HttpRequest& request) {
    stream << request.url << static_cast<quint32>(request.headers.size());
    for (const auto& [name, value] : request.headers)
        stream << name << value;
    return stream;
}

QDataStream& operator>>(QDataStream& stream, HttpRequest& request) {
    quint32 count = 0;
    stream >> request.url >> count;
    for (quint32 i = 0; i < count && stream.status() == QDataStream::Ok; ++i) {
        auto& [name, value] = request.headers.emplaceBack();
        stream >> name >> value;
    }
    return stream;
}

// The fields of each message, in their order; read and written alike.

template <typename Fields>
void each(Post& message, Fields fields) {
    fields(message.id, message.request, message.idleTimeout, message.body);
}
template <typename Fields>
void each(Get& message, Fields fields) {
    fields(message.id, message.request, message.idleTimeout, message.inPieces);
}
template <typename Fields>
void each(Cancel& message, Fields fields) {
    fields(message.id);
}
template <typename Fields>
void each(Ping& /*message*/, Fields /*fields*/) {}
template <typename Fields>
void each(Pong& /*message*/, Fields /*fields*/) {}
template <typename Fields>
void each(Piece& message, Fields fields) {
    fields(message.id, message.bytes, message.totalSize);
}
template <typename Fields>
void each(Done& message, Fields fields) {
    fields(message.id, message.response.status, message.response.body);
}
template <typename Fields>
void each(Failed& message, Fields fields) {
    fields(message.id, message.description);
}

template <typename Message>
QByteArray encodeMessage(Message message) {
    return frames::frame([&message](QDataStream& stream) {
        stream << static_cast<quint8>(message.index());
        std::visit(
            [&stream](auto& alternative) {
                each(
                    alternative, [&stream](const auto&... fields) { (stream << ... << fields); });
            },
            message);
    });
}

/// The alternative of a number, its fields read from the stream.
template <typename Message, size_t alternative = 0>
std::optional<Message> readAlternative(QDataStream& stream, quint8 number) {
    if constexpr (alternative < std::variant_size_v<Message>) {
        if (number != alternative)
            return readAlternative<Message, alternative + 1>(stream, number);
        std::variant_alternative_t<alternative, Message> message;
        each(message, [&stream](auto&... fields) { (stream >> ... >> fields); });
        return message;
    } else {
        return std::nullopt;
    }
}

template <typename Message>
std::optional<Message> decodeMessage(const QByteArray& payload) {
    return frames::parse<Message>(payload, &readAlternative<Message>);
}

}  // namespace

QByteArray encode(const Request& request) {
    return encodeMessage(request);
}

QByteArray encode(const Reply& reply) {
    return encodeMessage(reply);
}

std::optional<Request> decodeRequest(const QByteArray& payload) {
    return decodeMessage<Request>(payload);
}

std::optional<Reply> decodeReply(const QByteArray& payload) {
    return decodeMessage<Reply>(payload);
}

}  // namespace tralio::http_protocol
