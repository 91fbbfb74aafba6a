#pragma once

#include "engine/engine_test_support.h"
#include "programs/http/transport_words.h"
#include "support/raw_server.h"

namespace tralio {

/// The real tralio-http, and servers that play tricks on it.
struct HttpTest : testing::Test {
    using Time = std::chrono::milliseconds;
    using Script = RawServer::Script;

    /// What became of a POST to an address: its status and body, "no HTTP" and the body, or the failure's
    /// words.
    QCoro::Task<QString> post(QString url, QByteArray body = "text", Time idleTimeout = Time(20'000)) {
        const HttpRequest request{QUrl(url), {{"Authorization", "Bearer key"}}};
        QCoro::Task<HttpResponse> sending = client.send(request, std::move(body), idleTimeout, {});
        const HttpResponse response = co_await sending;
        co_return told(response);
    }
    QCoro::Task<QString> download(QString url) {
        QByteArray whole;
        QCoro::Task<HttpResponse> loading = client.download({QUrl(url), {{"Accept-Encoding", "identity"}}},
            [&](const QByteArray& piece, std::optional<qint64> totalSize) {
                whole += piece;
                announced = totalSize;
            },
            Time(20'000), {});
        const HttpResponse response = co_await loading;
        whole += response.body;
        co_return told({response.status, whole});
    }
    [[nodiscard]] static QString told(const HttpResponse& response) {
        const QString status =
            response.status ? QString::number(*response.status) : QStringLiteral("no HTTP");
        return (status + QLatin1Char(' ') + QString::fromUtf8(response.body)).trimmed();
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
    [[nodiscard]] static Script answering(const QByteArray& bytes, bool reset = false) {
        return [bytes, reset](RawServer::Connection& peer) {
            (void)peer.readRequest();
            peer.send(bytes);
            if (reset) {
                peer.wait(Time(30));
                peer.reset();
            }
        };
    }

    std::optional<qint64> announced = 0;  ///< size of the body that was downloaded last
    FakeClock clock;
    HelperHttpClient client{QStringLiteral(HTTP_PROGRAM), clock};
};

}  // namespace tralio
