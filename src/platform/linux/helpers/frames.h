#pragma once

#include <QByteArray>
#include <QDataStream>
#include <QtEndian>

#include <optional>
#include <utility>

/// How the program and its helper processes talk over standard input and output: in frames of a mark, a size
/// and a payload. A payload is a message's number and its fields. Neither side trusts the other's bytes.
namespace tralio::frames {

/// The frame of the payload that `write` puts into a stream.
template <typename Write>
[[nodiscard]] QByteArray frame(Write write);

/// Reads a payload to its end, by its message's number; anything short, wrong or left over makes it nothing.
template <typename Message, typename Read>
[[nodiscard]] std::optional<Message> parse(const QByteArray& payload, Read read);

/// Cuts a stream of bytes into the payloads of its frames.
class Reader {
public:
    explicit Reader(qint64 maximumSize) : m_maximumSize(maximumSize) {}

    void add(const QByteArray& bytes) { m_buffer += bytes; }

    /// The next payload, or nothing while it is incomplete.
    [[nodiscard]] std::optional<QByteArray> next();

    /// Whether what came is no frame; nothing can be made of what follows.
    [[nodiscard]] bool isBroken() const { return m_isBroken; }

private:
    qint64 m_maximumSize;
    QByteArray m_buffer;
    bool m_isBroken = false;
};

/// What a helper process does with its output: takes the standard output for frames alone, so that nothing a
/// library prints there gets between them. The descriptor, or -1.
[[nodiscard]] int takeStandardOutput();

/// Writes everything, however long the other side takes to read; ends the process when nobody is there to.
void writeAll(int file, const QByteArray& bytes);

// Implementation.

inline constexpr quint32 mark = 0x54524c4f;
inline constexpr qsizetype headerSize = 8;
inline constexpr auto streamVersion = QDataStream::Qt_6_4;

template <typename Write>
QByteArray frame(Write write) {
    QByteArray bytes;
    QDataStream stream(&bytes, QIODeviceBase::WriteOnly);
    stream.setVersion(streamVersion);
    stream << mark << quint32(0);
    write(stream);
    qToBigEndian(static_cast<quint32>(bytes.size() - headerSize), bytes.data() + sizeof(mark));
    return bytes;
}

template <typename Message, typename Read>
std::optional<Message> parse(const QByteArray& payload, Read read) {
    QDataStream stream(payload);
    stream.setVersion(streamVersion);
    quint8 number = 0;
    stream >> number;
    std::optional<Message> message = read(stream, number);
    const bool isWhole = stream.status() == QDataStream::Ok && stream.atEnd();
    return isWhole ? std::move(message) : std::nullopt;
}

}  // namespace tralio::frames
