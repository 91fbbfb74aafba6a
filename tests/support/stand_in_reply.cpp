#include "support/stand_in_reply.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "support/run_to_end.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

QByteArray json(const QJsonObject& object) {
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

}  // namespace

StandInReply StandInReply::delivered(Delivery how) const {
    StandInReply reply = *this;
    reply.delivery = how;
    return reply;
}

QByteArray StandInReply::head() const {
    QByteArray head = "HTTP/1.1 " + QByteArray::number(status) + " Stand-in\r\n";
    head += "Content-Type: application/json\r\n";
    for (const auto& [name, value] : headers)
        head += name + ": " + value + "\r\n";
    // An endless body has no length to announce; it would last until the connection closes.
    if (delivery != Delivery::endless)
        head += "Content-Length: " + QByteArray::number(body.size()) + "\r\n";
    return head + "\r\n";
}

StandInReply StandInReply::translation(const QString& text) {
    const QJsonObject message{{u"role"_s, u"assistant"_s}, {u"content"_s, text}};
    const QJsonObject choice{{u"index"_s, 0}, {u"message"_s, message}, {u"finish_reason"_s, u"stop"_s}};
    return {.status = 200, .body = json({{u"choices"_s, QJsonArray{choice}}}), .headers = {}};
}

StandInReply StandInReply::gzipped(const QString& text) {
    StandInReply reply = translation(text);
    reply.body = runToEnd(u"gzip"_s, {u"-c"_s}, {}, reply.body);
    reply.headers.emplaceBack("Content-Encoding", "gzip");
    return reply;
}

StandInReply StandInReply::error(int status, const QString& message) {
    return withBody(status, json({{u"error"_s, QJsonObject{{u"message"_s, message}}}}));
}

StandInReply StandInReply::redirect(int status, const QByteArray& location) {
    return {.status = status, .body = {}, .headers = {{"Location", location}}};
}

StandInReply StandInReply::withBody(int status, const QByteArray& body) {
    return {.status = status, .body = body, .headers = {}};
}

}  // namespace tralio
