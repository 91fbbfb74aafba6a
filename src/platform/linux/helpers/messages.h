#pragma once

#include <QByteArray>
#include <QDataStream>
#include <QStringList>

#include <chrono>
#include <optional>
#include <variant>

#include "platform/linux/helpers/frames.h"

/// How messages become payloads. A message is a plain record; `each(message, fields)`, found beside it, hands
/// its members to `fields` in their order, which serves for writing and for reading. All messages of a
/// direction are the alternatives of one variant, and go by their number in it.
namespace tralio::messages {

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

inline QDataStream& operator<<(QDataStream& stream, std::chrono::milliseconds duration) {
    return stream << qint64{duration.count()};
}

inline QDataStream& operator>>(QDataStream& stream, std::chrono::milliseconds& duration) {
    qint64 count = 0;
    stream >> count;
    duration = std::chrono::milliseconds(count);
    return stream;
}

/// A list, element by element: Qt's own reader would reserve whatever count it is told.
template <typename List>
void writeList(QDataStream& stream, const List& list) {
    stream << static_cast<quint32>(list.size());
    for (const auto& element : list)
        stream << element;
}

template <typename List>
void readList(QDataStream& stream, List& list) {
    quint32 count = 0;
    stream >> count;
    list.clear();
    for (quint32 i = 0; i < count && stream.status() == QDataStream::Ok; ++i) {
        typename List::value_type element;
        stream >> element;
        list.push_back(std::move(element));
    }
}

/// A list among a message's fields.
template <typename List>
struct Elements {
    explicit Elements(List& of) : list(of) {}
    List& list;
};

template <typename List>
QDataStream& operator<<(QDataStream& stream, const Elements<List>& field) {
    writeList(stream, field.list);
    return stream;
}

template <typename List>
QDataStream& operator>>(QDataStream& stream, Elements<List>& field) {
    readList(stream, field.list);
    return stream;
}

/// The frame of a message.
template <typename Message>
[[nodiscard]] QByteArray encode(Message message) {
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
[[nodiscard]] std::optional<Message> readAlternative(QDataStream& stream, quint8 number) {
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

/// The message of a payload, or nothing when it is none.
template <typename Message>
[[nodiscard]] std::optional<Message> decode(const QByteArray& payload) {
    return frames::parse<Message>(payload, &readAlternative<Message>);
}

}  // namespace tralio::messages
