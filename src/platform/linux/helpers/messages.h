#pragma once

#include <chrono>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>

#include "platform/linux/helpers/frames.h"

/// How messages become payloads. A message is one alternative of a variant (one variant per direction); it
/// is sent as the alternative's index, then its members. For every record type a free function `each(record,
/// fields)`, found by argument-dependent lookup, calls `fields` with the members in order; a member may be a
/// record itself.
///
/// `pass` both writes and reads: with a `Writer` it appends the value, with a `Reader` it overwrites a
/// default-constructed one. A protocol that needs another type adds an overload of `pass` in this namespace.
namespace tralio::messages {

struct Writer {
    void copy(const void* value, size_t size) { bytes.append(static_cast<const char*>(value), size); }
    [[nodiscard]] static size_t allowed(size_t size) { return size; }

    std::string bytes;
    static constexpr bool isGood = true;
};

struct Reader {
    void copy(void* value, size_t size) {
        size = allowed(size);
        std::memcpy(value, rest.data(), size);
        rest.remove_prefix(size);
    }
    /// `size` if that many bytes are left; otherwise 0, and the reader has failed from then on.
    [[nodiscard]] size_t allowed(size_t size) {
        isGood = isGood && size <= rest.size();
        return isGood ? size : 0;
    }

    std::string_view rest;
    bool isGood = true;
};

/// Values that are sent as they are in memory: both ends run on the same machine.
template <typename Value>
concept IsPlain =
    std::is_arithmetic_v<Value> || std::is_enum_v<Value> || std::is_same_v<Value, std::chrono::milliseconds>;

template <IsPlain Value>
void pass(auto& stream, Value& value) {
    stream.copy(&value, sizeof value);
}

void pass(auto& stream, bool& value) {
    auto byte = static_cast<unsigned char>(value);  // which may have any value when it arrives
    stream.copy(&byte, 1);
    value = byte != 0;
}

void pass(auto& stream, std::string& text) {
    auto size = static_cast<uint32_t>(text.size());
    pass(stream, size);
    text.resize(stream.allowed(size));
    stream.copy(text.data(), text.size());
}

template <typename First, typename Second>
void each(std::pair<First, Second>& pair, auto fields) {
    fields(pair.first, pair.second);
}

template <typename Record>
requires requires(Record& record) {
    each(
        record, [](auto&...) {});
}
void pass(auto& stream, Record& record) {
    each(
        record, [&stream](auto&... fields) { (pass(stream, fields), ...); });
}

template <typename Value>
void pass(auto& stream, std::optional<Value>& value) {
    bool isPresent = value.has_value();
    pass(stream, isPresent);
    if (isPresent)
        pass(stream, value ? *value : value.emplace());
}

/// A list is read element by element: reserving space for the count that was sent would trust it.
template <typename List>
requires requires(List& list) {
    list.emplace_back();
}
void pass(auto& stream, List& list) {
    auto count = static_cast<uint32_t>(list.size());
    pass(stream, count);
    for (uint32_t i = 0; i < count && stream.isGood; ++i)
        pass(stream, i < list.size() ? list[i] : list.emplace_back());
}

/// The frame that carries a message.
template <typename Message>
[[nodiscard]] std::string encode(Message message) {
    Writer writer;
    auto number = static_cast<uint8_t>(message.index());
    pass(writer, number);
    std::visit([&writer](auto& alternative) { pass(writer, alternative); }, message);
    return frames::frame(writer.bytes);
}

/// Reads the fields of the alternative with this index.
template <typename Message, size_t alternative = 0>
[[nodiscard]] std::optional<Message> readAlternative(Reader& reader, uint8_t number) {
    if constexpr (alternative < std::variant_size_v<Message>) {
        if (number != alternative)
            return readAlternative<Message, alternative + 1>(reader, number);
        std::variant_alternative_t<alternative, Message> message;
        pass(reader, message);
        return message;
    } else {
        return std::nullopt;
    }
}

/// The message in a payload; nothing if it is too short, invalid or has bytes left over.
template <typename Message>
[[nodiscard]] std::optional<Message> decode(std::string_view payload) {
    Reader reader{payload};
    uint8_t number = 0;
    pass(reader, number);
    std::optional<Message> message = readAlternative<Message>(reader, number);
    return reader.isGood && reader.rest.empty() ? std::move(message) : std::nullopt;
}

}  // namespace tralio::messages
