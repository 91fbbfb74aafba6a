#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QList>
#include <QString>

#include <utility>

#include "support/run_to_end.h"

namespace tralio {

using namespace Qt::StringLiterals;

/// The stand-in's reply to one request, and how it is delivered.
struct StandInReply {
    using Header = std::pair<QByteArray, QByteArray>;

    enum class Delivery {
        whole,          ///< correctly
        held,           ///< nothing at all until the test sends it
        trickled,       ///< the head at once, the body byte by byte when the test says so
        endless,        ///< blanks follow the body for ever
        withoutStatus,  ///< the body where a status line should be, then the connection is closed
    };

    int status = 200;
    QByteArray body{};
    QList<Header> headers{};
    Delivery delivery = Delivery::whole;

    /// This reply, delivered in another way.
    [[nodiscard]] StandInReply delivered(Delivery how) const { return {status, body, headers, how}; }

    /// The status line and the headers.
    [[nodiscard]] QByteArray head() const {
        QByteArray head = "HTTP/1.1 " + QByteArray::number(status) + " Stand-in\r\n";
        head += "Content-Type: application/json\r\n";
        for (const auto& [name, value] : headers)
            head += name + ": " + value + "\r\n";
        // An endless body cannot announce a length; it lasts until the connection closes.
        if (delivery != Delivery::endless)
            head += "Content-Length: " + QByteArray::number(body.size()) + "\r\n";
        return head + "\r\n";
    }

    [[nodiscard]] static StandInReply withBody(int status, const QByteArray& body) { return {status, body}; }
    [[nodiscard]] static StandInReply withJson(int status, const QJsonObject& body) {
        return {status, QJsonDocument(body).toJson(QJsonDocument::Compact)};
    }
    [[nodiscard]] static StandInReply redirect(int status, const QByteArray& location) {
        return {status, {}, {{"Location", location}}};
    }
    /// A successful reply of a model.
    [[nodiscard]] static StandInReply translation(const QString& text) {
        const QJsonObject message{{u"role"_s, u"assistant"_s}, {u"content"_s, text}};
        const QJsonObject choice{{u"index"_s, 0}, {u"message"_s, message}, {u"finish_reason"_s, u"stop"_s}};
        return withJson(200, {{u"choices"_s, QJsonArray{choice}}});
    }
    /// The same, compressed.
    [[nodiscard]] static StandInReply gzipped(const QString& text) {
        const QByteArray plain = translation(text).body;
        return {200, runToEnd(u"gzip"_s, {u"-c"_s}, {}, plain), {{"Content-Encoding", "gzip"}}};
    }
    /// An error, in the form that providers send.
    [[nodiscard]] static StandInReply error(int status, const QString& message) {
        return withJson(status, {{u"error"_s, QJsonObject{{u"message"_s, message}}}});
    }
};

}  // namespace tralio
