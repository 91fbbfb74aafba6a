#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QList>
#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>
#include <utility>

#include "support/files.h"

class QTcpServer;
class QTcpSocket;

namespace tralio {

using namespace Qt::StringLiterals;

/// What the stand-in sends back for one request, and how well it behaves while it does.
struct StandInReply {
    using Header = std::pair<QByteArray, QByteArray>;

    enum class Delivery {
        whole,          ///< as a good server would
        held,           ///< nothing at all, until the test sends it on
        trickled,       ///< the head at once, the body byte by byte as the test says
        endless,        ///< the body is followed by blanks for ever
        withoutStatus,  ///< the body alone, where a status line should be, and the connection closed
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
        // An endless body has no length to announce; it would last until the connection closes.
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
    /// A good reply of a model.
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
    /// An error as providers send it.
    [[nodiscard]] static StandInReply error(int status, const QString& message) {
        return withJson(status, {{u"error"_s, QJsonObject{{u"message"_s, message}}}});
    }
};

/// The stand-in: a small HTTP server on loopback in the place of a model. It speaks the chat-completions
/// protocol, keeps every request it gets, and misbehaves in the ways that servers on the Internet do.
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
        QJsonObject json;  ///< the body, or empty if it is no JSON object

        /// The value of a header, whatever its name's case; null if it was not sent.
        [[nodiscard]] QByteArray header(const QByteArray& name) const;
        /// The content of the last message: the text to translate.
        [[nodiscard]] QString userText() const;
        /// The content of the first message with the role "system"; null if there is none.
        [[nodiscard]] QString systemPrompt() const;
    };

    StandInModel();
    ~StandInModel() override;

    [[nodiscard]] quint16 port() const { return m_port; }
    /// What to enter as the base URL to reach the stand-in.
    [[nodiscard]] QString baseURL() const { return u"http://127.0.0.1:%1/v1"_s.arg(m_port); }

    /// From now on, replies in this way to every request.
    void translatesTo(const QString& translation) { replies(StandInReply::translation(translation)); }
    void translatesBy(std::function<QString(const Request&)> translate) {
        repliesBy([=](const Request& request) { return StandInReply::translation(translate(request)); });
    }
    void replies(const StandInReply& reply) {
        repliesBy([=](const Request&) { return reply; });
    }
    void repliesBy(std::function<StandInReply(const Request&)> reply) { m_reply = std::move(reply); }

    /// From now on nobody listens on the port.
    void refuseConnections();

    /// Sends the next byte of every reply that is held or trickled, or all that is left of them.
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
    static void streamForEver(QTcpSocket* socket);

    std::unique_ptr<QTcpServer> m_server;
    quint16 m_port = 0;
    std::function<StandInReply(const Request&)> m_reply;
    QList<Request> m_requests;
    QList<Unsent> m_unsent;
};

}  // namespace tralio
