#include "platform/linux/helpers/helper_http_client.h"

#include <qcorofuture.h>

#include <utility>

#include "engine/transport_error.h"

namespace tralio {

using namespace Qt::StringLiterals;
using namespace http_protocol;
using namespace std::chrono_literals;

namespace {

constexpr auto afterAText = 60s;
constexpr auto afterPreparation = 10s;

HelperProcess::Terms httpTerms(QString program) {
    return {.program = std::move(program),
        .maximumReply = maximumReply,
        .ping = encode(Ping{}),
        .silence = 10s,
        .words = {.cannotStart = u"Không thể khởi động tiến trình kết nối mạng."_s,
            .ended = u"Tiến trình kết nối mạng dừng đột ngột. Vui lòng thử lại."_s,
            .hangs = u"Tiến trình kết nối mạng không phản hồi. Vui lòng thử lại."_s,
            .talksNonsense = u"Tiến trình kết nối mạng trả lời không hợp lệ."_s}};
}

/// Errors show an internationalised host name in its own script; the request uses the ASCII form.
Head headOf(const HttpRequest& request, std::chrono::milliseconds idleTimeout) {
    const QUrl& url = request.url;
    Head head{.url = url.toEncoded().toStdString(),
        .server = url.authority(QUrl::FullyDecoded | QUrl::RemoveUserInfo).toStdString(),
        .idleTimeout = idleTimeout};
    for (const auto& [name, value] : request.headers)
        head.headers.emplace_back(name.toStdString(), value.toStdString());
    return head;
}

}  // namespace

HelperHttpClient::HelperHttpClient(QString program, Clock& clock)
    : m_helper(httpTerms(std::move(program)), clock) {
    connect(
        &m_helper, &HelperProcess::arrived, this, [this](const std::string& payload) { take(payload); });
    connect(&m_helper, &HelperProcess::lost, this,
        [this](const QString& words) { m_jobs.failAll(std::make_exception_ptr(TransportError(words))); });
}

HelperHttpClient::~HelperHttpClient() {
    m_jobs.failAll(std::make_exception_ptr(TransportError::cancelled()));
}

void HelperHttpClient::prepare(const QUrl& server) {
    m_helper.prepare(afterPreparation);
    if (!server.isEmpty())
        m_helper.send(encode(Prepare{server.toEncoded().toStdString()}));
}

QCoro::Task<HttpResponse> HelperHttpClient::send(
    HttpRequest request, QByteArray body, std::chrono::milliseconds idleTimeout, std::stop_token stop) {
    return submit(
        [=](Id id) {
            return Post{id, headOf(request, idleTimeout), body.toStdString()};
        },
        {.receive = {}, .isText = true, .stop = std::move(stop)});
}

QCoro::Task<HttpResponse> HelperHttpClient::download(
    HttpRequest request, Receive receive, std::chrono::milliseconds idleTimeout, std::stop_token stop) {
    const bool inPieces = static_cast<bool>(receive);
    return submit(
        [=](Id id) {
            return Get{id, headOf(request, idleTimeout), inPieces};
        },
        {.receive = std::move(receive), .stop = std::move(stop)});
}

QCoro::Task<HttpResponse> HelperHttpClient::submit(std::function<Request(Id)> request, Details details) {
    const std::stop_token stop = details.stop;
    if (stop.stop_requested())
        throw TransportError::cancelled();
    const Id id = m_jobs.add(std::move(details), stop, this,
        [this](Id stopped) { cancel(stopped, std::make_exception_ptr(TransportError::cancelled())); });
    const QFuture<HttpResponse> future = m_jobs.future(id);
    const std::string frame = encode(request(id));
    // The helper would reject such a frame as broken, and end with all other requests.
    if (frame.size() > maximumRequest) {
        m_jobs.fail(id,
            std::make_exception_ptr(TransportError(
                u"Nội dung cần gửi quá lớn (hơn %1 MB)."_s.arg(maximumRequest / (1024 * 1024)))));
    } else {
        m_helper.send(frame);
        m_helper.setAtWork(true);
    }
    const HttpResponse response = co_await future;

    // This object may be destroyed by now. A reply that was on its way when the user cancelled is dropped.
    if (stop.stop_requested())
        throw TransportError::cancelled();
    co_return response;
}

void HelperHttpClient::take(const std::string& payload) {
    if (const std::optional<Reply> reply = decodeReply(payload))
        std::visit([this](const auto& message) { take(message); }, *reply);
    else
        m_helper.refuse();
}

void HelperHttpClient::take(const Piece& piece) {
    const Details* job = m_jobs.find(piece.id);
    if (!job || !job->receive || job->stop.stop_requested())
        return;
    // a copy, since the call may settle the job and so destroy the original
    const Receive receive = job->receive;
    try {
        receive(QByteArray::fromStdString(piece.bytes), piece.totalSize);
    } catch (const LocalizedError&) {
        cancel(piece.id, std::current_exception());
    }
}

void HelperHttpClient::take(const Done& done) {
    const Details* job = m_jobs.find(done.id);
    const bool afterText = job && job->isText;
    m_jobs.succeed(done.id, {done.status, QByteArray::fromStdString(done.body)});
    rest(afterText);
}

void HelperHttpClient::take(const Failed& failed) {
    const Details* job = m_jobs.find(failed.id);
    const bool afterText = job && job->isText;
    m_jobs.fail(
        failed.id, std::make_exception_ptr(TransportError(QString::fromStdString(failed.description))));
    rest(afterText);
}

void HelperHttpClient::cancel(Id id, const std::exception_ptr& why) {
    const Details* job = m_jobs.find(id);
    if (!job)
        return;
    const bool afterText = job->isText;
    m_helper.send(encode(Cancel{id}));
    m_jobs.fail(id, why);
    rest(afterText);
}

void HelperHttpClient::rest(bool afterText) {
    if (afterText)
        m_helper.keepFor(afterAText);
    m_helper.setAtWork(!m_jobs.isEmpty());
}

}  // namespace tralio
