#include "platform/linux/helpers/helper_http_client.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QPromise>
#include <qcorofuture.h>

#include <utility>

#include "common/clock.h"
#include "engine/transport_error.h"

namespace tralio {

using namespace Qt::StringLiterals;
using namespace http_protocol;
using namespace std::chrono_literals;

namespace {

constexpr auto afterAText = 60s;
constexpr auto afterPreparation = 10s;

constexpr auto pingInterval = 5s;
constexpr int mostUnanswered = 3;
constexpr auto timeToEnd = 5s;

void deleteOnceEnded(QProcess* process) {
    process->disconnect();
    if (process->state() == QProcess::NotRunning)
        process->deleteLater();
    else
        QObject::connect(process, &QProcess::finished, process, &QObject::deleteLater);
}

}  // namespace

struct HelperHttpClient::Job {
    QPromise<HttpResponse> promise;
    Receive receive;
    bool isText = false;  ///< a POST, after which another may follow
    std::stop_token stop;
    std::optional<std::stop_callback<std::function<void()>>> onStop;

    void fail(std::exception_ptr error) {
        onStop.reset();
        receive = {};
        promise.setException(std::move(error));
        promise.finish();
    }
};

HelperHttpClient::HelperHttpClient(QString program, Clock& clock)
    : m_program(std::move(program)), m_clock(clock) {}

HelperHttpClient::~HelperHttpClient() {
    // Also those that have been told to end.
    for (QProcess* helper : findChildren<QProcess*>()) {
        helper->disconnect();
        helper->kill();
        helper->waitForFinished(1000);
    }
    failAll(TransportError::cancelled().errorDescription());
}

QString HelperHttpClient::installedProgram() {
    return QDir(QCoreApplication::applicationDirPath()).filePath(u"tralio-http"_s);
}

void HelperHttpClient::prepare() {
    startHelper();
    if (m_jobs.empty())
        keepHelperFor(afterPreparation, m_keptBriefly);
}

QCoro::Task<HttpResponse> HelperHttpClient::send(
    HttpRequest request, QByteArray body, std::chrono::milliseconds idleTimeout, std::stop_token stop) {
    const Id id = ++m_lastId;
    return submit(id, Post{id, std::move(request), idleTimeout, std::move(body)}, {}, std::move(stop));
}

QCoro::Task<HttpResponse> HelperHttpClient::download(
    HttpRequest request, Receive receive, std::chrono::milliseconds idleTimeout, std::stop_token stop) {
    const Id id = ++m_lastId;
    const bool inPieces = static_cast<bool>(receive);
    return submit(
        id, Get{id, std::move(request), idleTimeout, inPieces}, std::move(receive), std::move(stop));
}

QCoro::Task<HttpResponse> HelperHttpClient::submit(
    Id id, Request request, Receive receive, std::stop_token stop) {
    if (stop.stop_requested())
        throw TransportError::cancelled();
    const QByteArray frame = encode(request);
    // The helper would take it for no frame at all, and end with every other request.
    if (frame.size() > maximumRequest)
        throw TransportError(u"Nội dung cần gửi quá lớn (hơn %1 MB)."_s.arg(maximumRequest / (1024 * 1024)));
    const auto job = std::make_shared<Job>();
    job->promise.start();
    job->receive = std::move(receive);
    job->isText = std::holds_alternative<Post>(request);
    job->stop = stop;
    m_jobs.emplace(id, job);
    // A stop may be asked for on any thread, and while the request is being sent.
    job->onStop.emplace(stop, [this, id] {
        QMetaObject::invokeMethod(
            this, [this, id] { cancel(id, std::make_exception_ptr(TransportError::cancelled())); },
            Qt::QueuedConnection);
    });
    const QFuture<HttpResponse> future = job->promise.future();
    startHelper();
    m_helper->write(frame);
    if (!m_watch)
        watchHelper();
    const HttpResponse response = co_await future;

    // This object may be gone by now. The reply may have been on its way when the user cancelled.
    if (stop.stop_requested())
        throw TransportError::cancelled();
    co_return response;
}

void HelperHttpClient::cancel(Id id, std::exception_ptr why) {
    if (const auto job = release(id)) {
        if (m_helper)
            m_helper->write(encode(Cancel{id}));
        job->fail(std::move(why));
    }
}

void HelperHttpClient::startHelper() {
    if (m_helper)
        return;
    m_helper = new QProcess(this);
    m_frames = frames::Reader(maximumReply);
    m_unanswered = 0;
    m_helper->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    connect(m_helper, &QProcess::readyReadStandardOutput, this, &HelperHttpClient::readReplies);
    connect(m_helper, &QProcess::finished, this,
        [this] { giveUp(u"Tiến trình kết nối mạng dừng đột ngột. Vui lòng thử lại."_s); });
    // What cannot be started may say so from within `start`, while a request is still being sent.
    connect(
        m_helper, &QProcess::errorOccurred, this,
        [this](QProcess::ProcessError error) {
            if (error == QProcess::FailedToStart)
                giveUp(u"Không thể khởi động tiến trình kết nối mạng."_s);
        },
        Qt::QueuedConnection);
    m_helper->start(m_program, {u"--serve"_s});
}

void HelperHttpClient::readReplies() {
    m_frames.add(m_helper->readAllStandardOutput());
    while (const std::optional<QByteArray> payload = m_frames.next()) {
        const std::optional<Reply> reply = decodeReply(*payload);
        if (!reply) {
            giveUp(u"Tiến trình kết nối mạng trả lời không hợp lệ."_s);
            return;
        }
        std::visit([this](const auto& message) { take(message); }, *reply);
        if (!m_helper)
            return;
    }
    if (m_frames.isBroken())
        giveUp(u"Tiến trình kết nối mạng trả lời không hợp lệ."_s);
}

void HelperHttpClient::take(const Piece& piece) {
    const auto found = m_jobs.find(piece.id);
    if (found == m_jobs.end() || !found->second->receive || found->second->stop.stop_requested())
        return;
    const auto job = found->second;
    try {
        job->receive(piece.bytes, piece.totalSize);
    } catch (const LocalizedError&) {
        cancel(piece.id, std::current_exception());
    }
}

void HelperHttpClient::take(const Done& done) {
    if (const auto job = release(done.id)) {
        job->onStop.reset();
        job->receive = {};
        job->promise.addResult(done.response);
        job->promise.finish();
    }
}

void HelperHttpClient::take(const Failed& failed) {
    if (const auto job = release(failed.id))
        job->fail(std::make_exception_ptr(TransportError(failed.description)));
}

void HelperHttpClient::take(const Pong& /*pong*/) {
    m_unanswered = 0;
}

void HelperHttpClient::watchHelper() {
    m_unanswered = 0;
    m_watch = m_clock.every(pingInterval, [this] {
        if (++m_unanswered > mostUnanswered)
            giveUp(u"Tiến trình kết nối mạng không phản hồi. Vui lòng kiểm tra lại cài đặt proxy của máy."_s);
        else if (m_helper)
            m_helper->write(encode(Ping{}));
    });
}

std::shared_ptr<HelperHttpClient::Job> HelperHttpClient::release(Id id) {
    const auto node = m_jobs.extract(id);
    if (node.empty())
        return nullptr;
    if (node.mapped()->isText)
        keepHelperFor(afterAText, m_keptAfterText);
    if (m_jobs.empty()) {
        m_watch.takeBack();
        keepHelperFor(0s, m_keptBriefly);
    }
    return node.mapped();
}

void HelperHttpClient::keepHelperFor(std::chrono::milliseconds time, ScheduledCall& reason) {
    reason = m_clock.after(
        time,
        [this, &reason] {
            const ScheduledCall spent = std::exchange(reason, {});
            if (m_jobs.empty() && !m_keptAfterText && !m_keptBriefly)
                dismissHelper();
        });
}

void HelperHttpClient::dismissHelper() {
    QProcess* helper = std::exchange(m_helper, nullptr);
    if (!helper)
        return;
    deleteOnceEnded(helper);
    helper->closeWriteChannel();
    m_clock.after(timeToEnd, helper, [helper] { helper->kill(); });
}

void HelperHttpClient::giveUp(const QString& description) {
    if (QProcess* helper = std::exchange(m_helper, nullptr)) {
        deleteOnceEnded(helper);
        helper->kill();
    }
    failAll(description);
}

void HelperHttpClient::failAll(const QString& description) {
    m_keptAfterText.takeBack();
    m_keptBriefly.takeBack();
    m_watch.takeBack();
    for (const auto& [id, job] : std::exchange(m_jobs, {}))
        job->fail(std::make_exception_ptr(TransportError(description)));
}

}  // namespace tralio
