#pragma once

#include <QObject>

#include <map>
#include <memory>

#include "common/clock.h"
#include "engine/http_client.h"
#include "platform/linux/helpers/frames.h"
#include "platform/linux/helpers/http_protocol.h"

class QProcess;

namespace tralio {

/// Has requests sent by a process of ours, `tralio-http`: what the network and the TLS library take goes with
/// it, the question for a proxy holds nobody up, and what arrives from the network is taken apart elsewhere.
///
/// The process is started by the first request, or by `prepare`. After a POST it is kept for a minute, with
/// its connections: the next text often follows soon. Should it crash, or hang, as with a proxy script that
/// never ends, the requests under way fail, and the next one starts another.
class HelperHttpClient final : public QObject, public HttpClient {
public:
    HelperHttpClient(QString program, Clock& clock);
    ~HelperHttpClient() override;

    [[nodiscard]] static QString installedProgram();

    /// Tells that a request will follow soon.
    void prepare();

    [[nodiscard]] QCoro::Task<HttpResponse> send(HttpRequest request, QByteArray body,
        std::chrono::milliseconds idleTimeout, std::stop_token stop) override;
    [[nodiscard]] QCoro::Task<HttpResponse> download(HttpRequest request, Receive receive,
        std::chrono::milliseconds idleTimeout, std::stop_token stop) override;

private:
    struct Job;
    using Jobs = std::map<http_protocol::Id, std::shared_ptr<Job>>;

    [[nodiscard]] QCoro::Task<HttpResponse> submit(
        http_protocol::Id id, http_protocol::Request request, Receive receive, std::stop_token stop);
    void cancel(http_protocol::Id id, std::exception_ptr why);
    void startHelper();
    void readReplies();
    void take(const http_protocol::Piece& piece);
    void take(const http_protocol::Done& done);
    void take(const http_protocol::Failed& failed);
    void take(const http_protocol::Pong& pong);
    /// Asks the helper now and then whether it still lives, while it is at work.
    void watchHelper();
    /// Takes a job from those under way; null when it is none, or none any more.
    std::shared_ptr<Job> release(http_protocol::Id id);
    /// While there is a reason or a job, the helper stays.
    void keepHelperFor(std::chrono::milliseconds time, ScheduledCall& reason);
    /// Lets the helper end by itself.
    void dismissHelper();
    /// The helper is of no use any more.
    void giveUp(const QString& description);
    void failAll(const QString& description);

    QString m_program;
    Clock& m_clock;
    QProcess* m_helper = nullptr;
    frames::Reader m_frames{http_protocol::maximumReply};
    Jobs m_jobs;
    http_protocol::Id m_lastId = 0;
    int m_unanswered = 0;   ///< pings since the last pong
    ScheduledCall m_watch;  ///< the pings; there while jobs are
    /// The reasons to keep the helper, each the call that ends its time.
    ScheduledCall m_keptBriefly;
    ScheduledCall m_keptAfterText;
};

}  // namespace tralio
