#include "platform/linux/helpers/recogniser_protocol.h"

#include <QDataStream>
#include <QIODevice>

#include <utility>

#include "platform/linux/helpers/frames.h"

namespace tralio::recogniser_protocol {
namespace {

using namespace Qt::StringLiterals;

// Lists are written element by element: Qt's own reader would reserve whatever count it is told.

void writeList(QDataStream& stream, const QStringList& texts) {
    stream << static_cast<quint32>(texts.size());
    for (const QString& text : texts)
        stream << text;
}

QStringList readList(QDataStream& stream) {
    quint32 count = 0;
    stream >> count;
    QStringList texts;
    for (quint32 i = 0; i < count && stream.status() == QDataStream::Ok; ++i) {
        QString text;
        stream >> text;
        texts += text;
    }
    return texts;
}

void writeImage(QDataStream& stream, const QImage& image) {
    const QImage plain = image.convertToFormat(QImage::Format_ARGB32);
    stream << qint32(plain.width()) << qint32(plain.height()) << plain.devicePixelRatio();
    for (int y = 0; y < plain.height(); ++y)
        stream.writeRawData(reinterpret_cast<const char*>(plain.constScanLine(y)),
            static_cast<int>(plain.width() * bytesPerPixel));
}

std::optional<QImage> readImage(QDataStream& stream) {
    qint32 width = 0;
    qint32 height = 0;
    double ratio = 0;
    stream >> width >> height >> ratio;
    const bool isSound = width > 0 && height > 0 && qint64(width) * height <= maximumPixels && ratio > 0;
    if (!isSound || stream.device()->bytesAvailable() != qint64(width) * height * bytesPerPixel)
        return std::nullopt;
    QImage image(width, height, QImage::Format_ARGB32);
    if (image.isNull())
        return std::nullopt;
    for (int y = 0; y < height; ++y)
        stream.readRawData(
            reinterpret_cast<char*>(image.scanLine(y)), static_cast<int>(width * bytesPerPixel));
    image.setDevicePixelRatio(ratio);
    return image;
}

void write(QDataStream&, const PrepareRequest&) {}
void write(QDataStream&, const LanguagesRequest&) {}

void write(QDataStream& stream, const RecognizeRequest& request) {
    stream << (request.options.level == RecognitionRequest::Level::accurate)
           << request.options.usesLanguageCorrection << request.options.languages.has_value();
    writeList(stream, request.options.languages.value_or(QStringList()));
    const QUrl* file = std::get_if<QUrl>(&request.image);
    stream << (file != nullptr);
    if (file)
        stream << *file;
    else
        writeImage(stream, std::get<QImage>(request.image));
}

std::optional<RecognizeRequest> readRecognizeRequest(QDataStream& stream) {
    RecognizeRequest request;
    bool isAccurate = false;
    bool namesLanguages = false;
    bool isFile = false;
    stream >> isAccurate >> request.options.usesLanguageCorrection >> namesLanguages;
    request.options.level =
        isAccurate ? RecognitionRequest::Level::accurate : RecognitionRequest::Level::fast;
    const QStringList languages = readList(stream);
    if (namesLanguages)
        request.options.languages = languages;
    stream >> isFile;
    if (isFile) {
        QUrl file;
        stream >> file;
        request.image = file;
        return request;
    }
    std::optional<QImage> image = readImage(stream);
    if (!image)
        return std::nullopt;
    request.image = std::move(*image);
    return request;
}

void write(QDataStream& stream, const LanguagesReply& reply) {
    writeList(stream, reply.languages);
}

void write(QDataStream& stream, const Accepted& reply) {
    stream << reply.size;
}

void write(QDataStream& stream, const ObservationsReply& reply) {
    stream << static_cast<quint32>(reply.observations.size());
    for (const auto& [box, candidates] : reply.observations) {
        stream << box.x << box.y << box.width << box.height;
        writeList(stream, candidates);
    }
}

ObservationsReply readObservations(QDataStream& stream) {
    quint32 count = 0;
    stream >> count;
    ObservationsReply reply;
    for (quint32 i = 0; i < count && stream.status() == QDataStream::Ok; ++i) {
        NormalizedRect box;
        stream >> box.x >> box.y >> box.width >> box.height;
        reply.observations.push_back({box, readList(stream)});
    }
    return reply;
}

void write(QDataStream&, const NoImageReply&) {}

void write(QDataStream& stream, const FailureReply& reply) {
    stream << reply.description;
}

template <typename Message>
QByteArray encodeMessage(const Message& message) {
    return frames::frame([&message](QDataStream& stream) {
        stream << static_cast<quint8>(message.index());
        std::visit([&stream](const auto& alternative) { write(stream, alternative); }, message);
    });
}

template <typename Value>
Value readValue(QDataStream& stream) {
    Value value;
    stream >> value;
    return value;
}

}  // namespace

QString tooLarge(QSize size) {
    return u"Hình ảnh quá lớn (%1 × %2 điểm ảnh)."_s.arg(size.width()).arg(size.height());
}

QByteArray encode(const Request& request) {
    return encodeMessage(request);
}

QByteArray encode(const Reply& reply) {
    return encodeMessage(reply);
}

std::optional<Request> decodeRequest(const QByteArray& payload) {
    return frames::parse<Request>(
        payload,
        [](QDataStream& stream, quint8 index) -> std::optional<Request> {
            switch (index) {
                case 0:
                    return PrepareRequest{};
                case 1:
                    return LanguagesRequest{};
                case 2:
                    return readRecognizeRequest(stream);
                default:
                    return std::nullopt;
            }
        });
}

std::optional<Reply> decodeReply(const QByteArray& payload) {
    return frames::parse<Reply>(
        payload,
        [](QDataStream& stream, quint8 index) -> std::optional<Reply> {
            switch (index) {
                case 0:
                    return LanguagesReply{readList(stream)};
                case 1:
                    return Accepted{readValue<QSize>(stream)};
                case 2:
                    return readObservations(stream);
                case 3:
                    return NoImageReply{};
                case 4:
                    return FailureReply{readValue<QString>(stream)};
                default:
                    return std::nullopt;
            }
        });
}

}  // namespace tralio::recogniser_protocol
