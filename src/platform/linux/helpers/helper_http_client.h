#pragma once

#include <QObject>

#include <functional>

#include "engine/http_client.h"
#include "platform/linux/helpers/helper_jobs.h"
#include "platform/linux/helpers/helper_process.h"
#include "platform/linux/helpers/http_protocol.h"

namespace tralio {

/// Sends requests through a helper process, `tralio-http`: the memory of the network and TLS libraries is
/// freed with it, the question for a proxy blocks nobody here, and data from the network is parsed in another
/// process.
///
/// After a POST the process is kept for a minute, since the next text often follows soon. If it crashes or
/// hangs, the requests under way fail; none is sent again.
class HelperHttpClient final : public QObject, public HttpClient {
public:
    HelperHttpClient(QString program, Clock& clock);
    ~HelperHttpClient() override;

    /// Announces a request to the server of that address, so that the new connection can be prepared. With an
    /// empty address only the process is started.
    void prepare(const QUrl& server);

    [[nodiscard]] QCoro::Task<HttpResponse> send(HttpRequest request, QByteArray body,
        std::chrono::milliseconds idleTimeout, std::stop_token stop) override;
    [[nodiscard]] QCoro::Task<HttpResponse> download(HttpRequest request, Receive receive,
        std::chrono::milliseconds idleTimeout, std::stop_token stop) override;

    /// The process id of the running helper, or 0.
    [[nodiscard]] qint64 helperProcessId() const { return m_helper.processId(); }

private:
    struct Details {
        Receive receive;
        bool isText = false;  ///< a POST, after which another is likely
        std::stop_token stop;
    };
    using Id = http_protocol::Id;

    [[nodiscard]] QCoro::Task<HttpResponse> submit(
        std::function<http_protocol::Request(Id)> request, Details details);
    void take(const std::string& payload);
    void take(const http_protocol::Piece& piece);
    void take(const http_protocol::Done& done);
    void take(const http_protocol::Failed& failed);
    void take(const http_protocol::Pong& /*pong*/) {}
    void cancel(Id id, const std::exception_ptr& why);
    /// Applied once a job is settled: how long the helper is still kept.
    void rest(bool afterText);

    HelperProcess m_helper;
    HelperJobs<HttpResponse, Details> m_jobs;
};

}  // namespace tralio
