#include "support/stand_in_model.h"

#include <QTcpServer>
#include <QTcpSocket>

namespace tralio {
namespace {

/// The first request in `data` and its size in bytes; nothing while it is incomplete.
std::optional<std::pair<StandInModel::Request, qsizetype>> parseRequest(const QByteArray& data) {
    const qsizetype headSize = data.indexOf("\r\n\r\n");
    if (headSize < 0)
        return std::nullopt;

    StandInModel::Request request;
    QList<QByteArray> lines = data.first(headSize).split('\n');
    const QList<QByteArray> requestLine = lines.takeFirst().trimmed().split(' ');
    request.method = requestLine.value(0);
    request.target = requestLine.value(1);
    for (const QByteArray& line : std::as_const(lines)) {
        const qsizetype colon = line.indexOf(':');
        request.headers.emplaceBack(line.first(colon).trimmed(), line.sliced(colon + 1).trimmed());
    }

    const qsizetype bodySize = request.header("Content-Length").toLongLong();
    const qsizetype size = headSize + 4 + bodySize;
    if (data.size() < size)
        return std::nullopt;
    request.body = data.sliced(headSize + 4, bodySize);
    request.json = QJsonDocument::fromJson(request.body).object();
    return std::pair(request, size);
}

}  // namespace

QByteArray StandInModel::Request::header(const QByteArray& name) const {
    for (const auto& [key, value] : headers)
        if (key.compare(name, Qt::CaseInsensitive) == 0)
            return value;
    return {};
}

QString StandInModel::Request::userText() const {
    return json[u"messages"_s].toArray().last()[u"content"_s].toString();
}

QString StandInModel::Request::systemPrompt() const {
    for (const QJsonValue& message : json[u"messages"_s].toArray())
        if (message[u"role"_s] == u"system"_s)
            return message[u"content"_s].toString();
    return {};
}

StandInModel::StandInModel() : m_server(std::make_unique<QTcpServer>()) {
    connect(m_server.get(), &QTcpServer::pendingConnectionAvailable, this, [this] {
        while (QTcpSocket* socket = m_server->nextPendingConnection())
            accept(socket);
    });
    if (!m_server->listen(QHostAddress::LocalHost))
        qFatal("The stand-in cannot listen on loopback.");
    m_port = m_server->serverPort();
    translatesTo(u"Xin chào"_s);
}

StandInModel::~StandInModel() = default;

void StandInModel::refuseConnections() {
    m_server->close();
    for (QTcpSocket* socket : m_server->findChildren<QTcpSocket*>())
        socket->abort();
}

void StandInModel::sendOneByte() {
    for (Unsent& unsent : m_unsent) {
        if (!unsent.socket || unsent.bytes.isEmpty())
            continue;
        unsent.socket->write(unsent.bytes.first(1));
        unsent.bytes.remove(0, 1);
    }
}

void StandInModel::sendTheRest() {
    for (const Unsent& unsent : std::exchange(m_unsent, {}))
        if (unsent.socket)
            unsent.socket->write(unsent.bytes);
}

qsizetype StandInModel::openConnections() const {
    return m_server->findChildren<QTcpSocket*>().size();
}

void StandInModel::accept(QTcpSocket* socket) {
    connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    connect(socket, &QTcpSocket::readyRead, this, [this, socket] { readRequests(socket); });
    readRequests(socket);
}

void StandInModel::readRequests(QTcpSocket* socket) {
    while (const auto parsed = parseRequest(socket->peek(socket->bytesAvailable()))) {
        const auto& [request, size] = *parsed;
        socket->skip(size);
        m_requests.append(request);
        Q_EMIT requestReceived();
        deliver(socket, m_reply(request));
    }
}

void StandInModel::deliver(QTcpSocket* socket, const StandInReply& reply) {
    switch (reply.delivery) {
        case StandInReply::Delivery::whole:
            socket->write(reply.head() + reply.body);
            break;
        case StandInReply::Delivery::held:
            m_unsent.append({socket, reply.head() + reply.body});
            break;
        case StandInReply::Delivery::trickled:
            socket->write(reply.head());
            m_unsent.append({socket, reply.body});
            break;
        case StandInReply::Delivery::withoutStatus:
            socket->write(reply.body);
            socket->disconnectFromHost();
            break;
    }
}

}  // namespace tralio
