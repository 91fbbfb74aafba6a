#pragma once

#include <QByteArray>
#include <QSize>
#include <QStringList>

#include <optional>
#include <variant>
#include <vector>

#include "ocr/text_recognizer.h"

/// How the program and its recogniser talk over the recogniser's standard input and output: in frames of a
/// mark, a size and a payload. The recogniser answers the requests in their order, one reply each; a
/// `PrepareRequest` has none, and a `RecognizeRequest` is first told `Accepted`. Neither side trusts the
/// other's bytes.
namespace tralio::helper_protocol {

/// More than this is refused before it is decoded or sent.
inline constexpr qint64 maximumPixels = 64'000'000;

/// What the user is told of such an image.
[[nodiscard]] QString tooLarge(QSize size);

struct PrepareRequest {};
struct LanguagesRequest {};
struct RecognizeRequest {
    ImageSource image;
    RecognitionRequest options;
};
using Request = std::variant<PrepareRequest, LanguagesRequest, RecognizeRequest>;

struct LanguagesReply {
    QStringList languages;
};
/// The image could be decoded and is of this size; how long the rest may take depends on that.
struct Accepted {
    QSize size;
};
struct ObservationsReply {
    std::vector<TextObservation> observations;
};
struct NoImageReply {};
struct FailureReply {
    QString description;
};
using Reply = std::variant<LanguagesReply, Accepted, ObservationsReply, NoImageReply, FailureReply>;

[[nodiscard]] QByteArray encode(const Request& request);
[[nodiscard]] QByteArray encode(const Reply& reply);

/// The message of a payload, or nothing when it is none.
[[nodiscard]] std::optional<Request> decodeRequest(const QByteArray& payload);
[[nodiscard]] std::optional<Reply> decodeReply(const QByteArray& payload);

/// Cuts a stream of bytes into the payloads of its frames.
class FrameReader {
public:
    enum class From { program, recogniser };

    explicit FrameReader(From from);

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

}  // namespace tralio::helper_protocol
