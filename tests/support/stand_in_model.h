#pragma once

#include <QtCore>

#include <functional>
#include <memory>

#include "support/files.h"

class QTcpServer;
class QTcpSocket;

namespace tralio {

using namespace Qt::StringLiterals;

/// The stand-in's reply to one request, and how it is delivered.
struct StandInReply {
    using Header = std::pair<QByteArray, QByteArray>;

    enum class Delivery {
        whole,          ///< correctly
        held,           ///< nothing at all until the test sends it
        trickled,       ///< the head at once, the body byte by byte when the test says so
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
        return head + "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n";
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

/// The stand-in: a small HTTP server on loopback that replaces a model. It speaks the chat-completions
/// protocol, records every request, and can misbehave in the ways that servers on the Internet do.
///
///     StandInModel standIn;
///     standIn.translatesTo(u"Xin chào"_s);
///     ... point the program at standIn.baseURL() and use it ...
///     EXPECT_EQ(standIn.requests().last().userText(), u"Hello"_s);
///
/// Lives on the event loop of the thread that made it.
class StandInModel final : public QObject {
    Q_OBJECT

public:
    struct Request {
        QByteArray method;
        QByteArray target;  ///< the path, or the whole URL if the stand-in is used as a proxy
        QList<StandInReply::Header> headers;
        QByteArray body;
        QJsonObject json;  ///< the body; empty unless it is a JSON object

        /// The value of a header, by case-insensitive name; null if it was not sent.
        [[nodiscard]] QByteArray header(const QByteArray& name) const;
        /// The content of the last message: the text to translate.
        [[nodiscard]] QString userText() const;
        /// The content of the first message with the role "system"; null if there is none.
        [[nodiscard]] QString systemPrompt() const;
    };

    StandInModel();
    ~StandInModel() override;

    [[nodiscard]] quint16 port() const { return m_port; }
    /// The base URL of the stand-in.
    [[nodiscard]] QString baseURL() const { return u"http://127.0.0.1:%1/v1"_s.arg(m_port); }

    /// Sets the reply to all further requests.
    void translatesTo(const QString& translation) { replies(StandInReply::translation(translation)); }
    void translatesBy(std::function<QString(const Request&)> translate) {
        repliesBy([=](const Request& request) { return StandInReply::translation(translate(request)); });
    }
    void replies(const StandInReply& reply) {
        repliesBy([=](const Request&) { return reply; });
    }
    void repliesBy(std::function<StandInReply(const Request&)> reply) { m_reply = std::move(reply); }

    /// From now on connections are refused.
    void refuseConnections();

    /// Send the next byte of every held or trickled reply, or all that is left of them.
    void sendOneByte();
    void sendTheRest();

    [[nodiscard]] const QList<Request>& requests() const { return m_requests; }
    [[nodiscard]] qsizetype openConnections() const;

Q_SIGNALS:
    void requestReceived();

private:
    struct Unsent {
        QPointer<QTcpSocket> socket;
        QByteArray bytes;
    };

    void accept(QTcpSocket* socket);
    void readRequests(QTcpSocket* socket);
    void deliver(QTcpSocket* socket, const StandInReply& reply);

    std::unique_ptr<QTcpServer> m_server;
    quint16 m_port = 0;
    std::function<StandInReply(const Request&)> m_reply;
    QList<Request> m_requests;
    QList<Unsent> m_unsent;
};

}  // namespace tralio
