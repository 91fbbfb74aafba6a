#pragma once

#include "engine/engine_test_support.h"
#include "programs/http/transport_words.h"
#include "support/raw_server.h"

namespace tralio {

/// The real tralio-http, and servers that play tricks on it.
struct HttpTest : testing::Test {
    using Time = std::chrono::milliseconds;
    using Script = RawServer::Script;

    QCoro::Task<HttpResponse> post(const QString& url, QByteArray body = "text", Time idleTimeout = 20s) {
        return client.send({QUrl(url), {{"Authorization", "Bearer key"}}}, std::move(body), idleTimeout, {});
    }
    QCoro::Task<HttpResponse> download(const QString& url) {
        const auto receive = [this](const QByteArray& piece, std::optional<qint64> totalSize) {
            downloaded += piece;
            announced = totalSize;
        };
        return client.download({QUrl(url), {{"Accept-Encoding", "identity"}}}, receive, 20s, {});
    }
    [[nodiscard]] static QString urlOf(const RawServer& server) {
        return QStringLiteral("http://127.0.0.1:%1/v1").arg(server.port());
    }
    [[nodiscard]] static QString timedOut(quint16 port, Time limit) {
        return QString::fromStdString(timedOutWords("127.0.0.1:" + std::to_string(port), limit));
    }
    [[nodiscard]] static QByteArray reply(
        const QByteArray& body, const QByteArray& head = "HTTP/1.1 200 OK\r\n") {
        return head + "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
    }

    /// Reads a request, sends these bytes, and ends the connection.
    [[nodiscard]] static Script answering(const QByteArray& bytes) {
        return [bytes](RawServer::Connection& peer) {
            (void)peer.readRequest();
            peer.send(bytes);
        };
    }

    QByteArray downloaded;
    std::optional<qint64> announced = 0;  ///< size of the body that was downloaded last
    FakeClock clock;
    HelperHttpClient client{QStringLiteral(HTTP_PROGRAM), clock};
};

}  // namespace tralio
