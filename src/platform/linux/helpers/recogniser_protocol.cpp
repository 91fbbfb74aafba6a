#include "platform/linux/helpers/recogniser_protocol.h"

#include "platform/linux/helpers/messages.h"

namespace tralio {

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
    fields(message.options, message.file);
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

QString tooLarge() {
    return u"Hình ảnh quá lớn (hơn %1 MB)."_s.arg(largestPicture >> 20);
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
