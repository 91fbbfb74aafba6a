#pragma once

#include <QSize>
#include <QStringList>

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "ocr/text_recognizer.h"

/// The messages between the program and its recogniser. Requests are answered in order, with one reply each,
/// except that `PrepareRequest` has no reply, and that `RecognizeRequest` first gets `Accepted` and any
/// number of `Progress`.
namespace tralio::recogniser_protocol {

/// A larger image is refused before it is decoded.
inline constexpr qint64 maximumPixels = 64'000'000;

inline constexpr size_t maximumRequest = 64 * 1024;
inline constexpr size_t maximumReply = 16 * 1024 * 1024;

/// The error messages for an image of that size, and for one of more than `largestPicture` bytes.
[[nodiscard]] QString tooLarge(QSize size);
[[nodiscard]] QString tooLarge();

struct PrepareRequest {};
struct LanguagesRequest {};
struct RecognizeRequest {
    QString file;
    RecognitionRequest options;
};
using Request = std::variant<PrepareRequest, LanguagesRequest, RecognizeRequest>;

struct LanguagesReply {
    QStringList languages;
};
/// The image has been recognised as one of this size, by which the time limit for the rest is set.
struct Accepted {
    QSize size;
};
/// The number of lines read so far; more will follow.
struct Progress {
    qint32 lines = 0;
};
struct ObservationsReply {
    std::vector<TextObservation> observations;
};
struct NoImageReply {};
struct FailureReply {
    QString description;
};
using Reply = std::variant<LanguagesReply, Accepted, Progress, ObservationsReply, NoImageReply, FailureReply>;

[[nodiscard]] std::string encode(Request request);
[[nodiscard]] std::string encode(Reply reply);

/// The message in a payload; nothing if the payload is invalid.
[[nodiscard]] std::optional<Request> decodeRequest(std::string_view payload);
[[nodiscard]] std::optional<Reply> decodeReply(std::string_view payload);

}  // namespace tralio::recogniser_protocol
