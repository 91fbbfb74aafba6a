#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>

#include "support/stand_in_reply.h"

class QTcpServer;
class QTcpSocket;

namespace tralio {

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
    static void streamForEver(QTcpSocket* socket);

    std::unique_ptr<QTcpServer> m_server;
    quint16 m_port = 0;
    std::function<StandInReply(const Request&)> m_reply;
    QList<Request> m_requests;
    QList<Unsent> m_unsent;
};

}  // namespace tralio
