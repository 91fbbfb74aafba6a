#include "support/stand_in_model.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>

#include <optional>
#include <utility>

#include "support/files.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

/// A fresh key and a certificate for it that it signed itself, which are left in the folder.
QSslConfiguration selfSignedConfiguration(const QTemporaryDir& folder) {
    const QString key = folder.filePath(u"key.pem"_s);
    const QString certificate = folder.filePath(u"certificate.pem"_s);
    QProcess openssl;
    openssl.start(u"openssl"_s,
        {u"req"_s, u"-x509"_s, u"-newkey"_s, u"rsa:2048"_s, u"-nodes"_s, u"-days"_s, u"2"_s, u"-subj"_s,
            u"/CN=localhost"_s, u"-addext"_s, u"subjectAltName=DNS:localhost,IP:127.0.0.1"_s, u"-keyout"_s,
            key, u"-out"_s, certificate});
    if (!openssl.waitForFinished() || openssl.exitCode() != 0)
        qFatal("The stand-in needs the openssl program.");

    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setPrivateKey(QSslKey(contentOf(key), QSsl::Rsa));
    configuration.setLocalCertificate(QSslCertificate(contentOf(certificate)));
    return configuration;
}

/// The first request in `data` and the number of bytes it takes; nothing while it is not complete.
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
    const QJsonArray messages = json.value(u"messages"_s).toArray();
    return messages.isEmpty() ? QString() : messages.last()[u"content"_s].toString();
}

QString StandInModel::Request::systemPrompt() const {
    const QJsonArray messages = json.value(u"messages"_s).toArray();
    for (const QJsonValue& message : messages)
        if (message[u"role"_s].toString() == u"system"_s)
            return message[u"content"_s].toString();
    return {};
}

StandInModel::StandInModel(Encryption encryption) : m_encryption(encryption) {
    if (encryption == Encryption::selfSigned) {
        auto server = std::make_unique<QSslServer>();
        server->setSslConfiguration(selfSignedConfiguration(m_certificates.emplace()));
        m_server = std::move(server);
    } else {
        m_server = std::make_unique<QTcpServer>();
    }
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

QString StandInModel::baseURL() const {
    const QString scheme = m_encryption == Encryption::none ? u"http"_s : u"https"_s;
    return u"%1://127.0.0.1:%2/v1"_s.arg(scheme, QString::number(m_port));
}

QString StandInModel::certificate() const {
    return m_certificates->filePath(u"certificate.pem"_s);
}

void StandInModel::translatesTo(const QString& translation) {
    replies(StandInReply::translation(translation));
}

void StandInModel::translatesBy(std::function<QString(const Request&)> translate) {
    repliesBy([translate = std::move(translate)](
                  const Request& request) { return StandInReply::translation(translate(request)); });
}

void StandInModel::replies(const StandInReply& reply) {
    repliesBy([reply](const Request&) { return reply; });
}

void StandInModel::repliesBy(std::function<StandInReply(const Request&)> reply) {
    m_reply = std::move(reply);
}

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
        case StandInReply::Delivery::endless:
            socket->write(reply.head() + reply.body);
            streamForEver(socket);
            break;
        case StandInReply::Delivery::withoutStatus:
            socket->write(reply.body);
            socket->disconnectFromHost();
            break;
    }
}

void StandInModel::streamForEver(QTcpSocket* socket) {
    const auto writeMore = [socket] {
        const QByteArray blanks(64 * 1024, ' ');
        if (socket->bytesToWrite() < blanks.size())
            socket->write(blanks);
    };
    connect(socket, &QTcpSocket::bytesWritten, socket, writeMore);
    writeMore();
}

}  // namespace tralio
