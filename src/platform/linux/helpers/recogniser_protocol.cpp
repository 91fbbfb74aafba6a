#include "platform/linux/helpers/recogniser_protocol.h"

#include <QIODevice>

#include "platform/linux/helpers/messages.h"

namespace tralio {
namespace {

void writeBitmap(QDataStream& stream, const QImage& image) {
    const QImage plain = image.convertToFormat(QImage::Format_ARGB32);
    stream << qint32(plain.width()) << qint32(plain.height()) << plain.devicePixelRatio();
    for (int y = 0; y < plain.height(); ++y)
        stream.writeRawData(reinterpret_cast<const char*>(plain.constScanLine(y)),
            static_cast<int>(plain.width() * recogniser_protocol::bytesPerPixel));
}

/// The bitmap takes the rest of the message; one of another size makes it none.
QImage readBitmap(QDataStream& stream) {
    using namespace recogniser_protocol;
    qint32 width = 0;
    qint32 height = 0;
    double ratio = 0;
    stream >> width >> height >> ratio;
    const bool isSound = width > 0 && height > 0 && qint64(width) * height <= maximumPixels && ratio > 0;
    QImage image;
    if (isSound && stream.device()->bytesAvailable() == qint64(width) * height * bytesPerPixel)
        image = QImage(width, height, QImage::Format_ARGB32);
    if (image.isNull()) {
        stream.setStatus(QDataStream::ReadCorruptData);
        return image;
    }
    for (int y = 0; y < height; ++y)
        stream.readRawData(
            reinterpret_cast<char*>(image.scanLine(y)), static_cast<int>(width * bytesPerPixel));
    image.setDevicePixelRatio(ratio);
    return image;
}

/// The source of a message, under a name of ours by which its operators are found.
struct SourceField {
    ImageSource& source;
};

QDataStream& operator<<(QDataStream& stream, const SourceField& field) {
    const QUrl* file = std::get_if<QUrl>(&field.source);
    stream << (file != nullptr);
    if (file)
        stream << *file;
    else
        writeBitmap(stream, std::get<QImage>(field.source));
    return stream;
}

QDataStream& operator>>(QDataStream& stream, SourceField& field) {
    bool isFile = false;
    stream >> isFile;
    if (isFile)
        stream >> field.source.emplace<QUrl>();
    else
        field.source = readBitmap(stream);
    return stream;
}

}  // namespace

static QDataStream& operator<<(QDataStream& stream, const RecognitionRequest& request) {
    stream << (request.level == RecognitionRequest::Level::accurate) << request.usesLanguageCorrection
           << request.languages.has_value();
    messages::writeList(stream, request.languages.value_or(QStringList()));
    return stream;
}

static QDataStream& operator>>(QDataStream& stream, RecognitionRequest& request) {
    bool isAccurate = false;
    bool namesLanguages = false;
    stream >> isAccurate >> request.usesLanguageCorrection >> namesLanguages;
    request.level = isAccurate ? RecognitionRequest::Level::accurate : RecognitionRequest::Level::fast;
    QStringList languages;
    messages::readList(stream, languages);
    if (namesLanguages)
        request.languages = languages;
    return stream;
}

static QDataStream& operator<<(QDataStream& stream, const TextObservation& observation) {
    const NormalizedRect& box = observation.boundingBox;
    stream << box.x << box.y << box.width << box.height;
    messages::writeList(stream, observation.candidates);
    return stream;
}

static QDataStream& operator>>(QDataStream& stream, TextObservation& observation) {
    NormalizedRect& box = observation.boundingBox;
    stream >> box.x >> box.y >> box.width >> box.height;
    messages::readList(stream, observation.candidates);
    return stream;
}

namespace recogniser_protocol {

using namespace Qt::StringLiterals;

template <typename Fields>
static void each(PrepareRequest& /*message*/, Fields /*fields*/) {}
template <typename Fields>
static void each(LanguagesRequest& /*message*/, Fields /*fields*/) {}
template <typename Fields>
static void each(RecognizeRequest& message, Fields fields) {
    SourceField source{message.image};
    fields(message.options, source);
}
template <typename Fields>
static void each(LanguagesReply& message, Fields fields) {
    messages::Elements languages{message.languages};
    fields(languages);
}
template <typename Fields>
static void each(Accepted& message, Fields fields) {
    fields(message.size);
}
template <typename Fields>
static void each(Progress& message, Fields fields) {
    fields(message.lines);
}
template <typename Fields>
static void each(ObservationsReply& message, Fields fields) {
    messages::Elements observations{message.observations};
    fields(observations);
}
template <typename Fields>
static void each(NoImageReply& /*message*/, Fields /*fields*/) {}
template <typename Fields>
static void each(FailureReply& message, Fields fields) {
    fields(message.description);
}

QString tooLarge(QSize size) {
    return u"Hình ảnh quá lớn (%1 × %2 điểm ảnh)."_s.arg(size.width()).arg(size.height());
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

}  // namespace recogniser_protocol
}  // namespace tralio
