#include "platform/linux/helpers/recogniser_protocol.h"

#include "platform/linux/helpers/messages.h"

namespace tralio {

namespace messages {

static void pass(auto& stream, QString& text) {
    std::string utf8 = text.toStdString();
    pass(stream, utf8);
    text = QString::fromStdString(utf8);
}

}  // namespace messages

static void each(RecognitionRequest& request, auto fields) {
    fields(request.level, request.usesLanguageCorrection, request.languages);
}
static void each(NormalizedRect& box, auto fields) {
    fields(box.x, box.y, box.width, box.height);
}
static void each(TextObservation& observation, auto fields) {
    fields(observation.boundingBox, observation.candidates);
}

namespace recogniser_protocol {

using namespace Qt::StringLiterals;

static void each(PrepareRequest& /*message*/, auto /*fields*/) {}
static void each(LanguagesRequest& /*message*/, auto /*fields*/) {}
static void each(RecognizeRequest& message, auto fields) {
    fields(message.options, message.file);
}
static void each(LanguagesReply& message, auto fields) {
    fields(message.languages);
}
static void each(Accepted& message, auto fields) {
    fields(message.size.rwidth(), message.size.rheight());
}
static void each(Progress& message, auto fields) {
    fields(message.lines);
}
static void each(ObservationsReply& message, auto fields) {
    fields(message.observations);
}
static void each(NoImageReply& /*message*/, auto /*fields*/) {}
static void each(FailureReply& message, auto fields) {
    fields(message.description);
}

QString tooLarge(QSize size) {
    return u"Hình ảnh quá lớn (%1 × %2 điểm ảnh)."_s.arg(size.width()).arg(size.height());
}

QString tooLarge() {
    return u"Hình ảnh quá lớn (hơn %1 MB)."_s.arg(largestPicture >> 20);
}

std::string encode(Request request) {
    return messages::encode(std::move(request));
}

std::string encode(Reply reply) {
    return messages::encode(std::move(reply));
}

std::optional<Request> decodeRequest(std::string_view payload) {
    return messages::decode<Request>(payload);
}

std::optional<Reply> decodeReply(std::string_view payload) {
    return messages::decode<Reply>(payload);
}

}  // namespace recogniser_protocol
}  // namespace tralio
