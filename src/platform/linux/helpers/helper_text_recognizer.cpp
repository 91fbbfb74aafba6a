#include "platform/linux/helpers/helper_text_recognizer.h"

#include <QCoreApplication>
#include <QDir>
#include <QPromise>
#include <qcorofuture.h>

#include <algorithm>
#include <functional>
#include <utility>

#include "common/clock.h"
#include "ocr/ocr_error.h"

namespace tralio {

using namespace Qt::StringLiterals;
using namespace recogniser_protocol;

struct HelperTextRecognizer::Job {
    QByteArray frame;
    QPromise<Reply> promise;
    bool wasSentBefore = false;
    std::optional<std::stop_callback<std::function<void()>>> onStop;
};

namespace {

QString cancelled() {
    return u"Đã hủy nhận dạng."_s;
}

QString crashed() {
    return u"Bộ nhận dạng dừng đột ngột."_s;
}

/// The reply of the kind that was asked for. Any other is a failure.
template <typename Expected>
Expected expect(const Reply& reply) {
    if (const auto* expected = std::get_if<Expected>(&reply))
        return *expected;
    if (const auto* failure = std::get_if<FailureReply>(&reply))
        throw LocalizedError(failure->description);
    if (std::holds_alternative<NoImageReply>(reply))
        throw OCRError::invalidImage();
    throw LocalizedError(u"Bộ nhận dạng trả lời sai câu hỏi."_s);
}

void refuseTooLarge(const ImageSource& image) {
    const auto* bitmap = std::get_if<QImage>(&image);
    if (bitmap && qint64(bitmap->width()) * bitmap->height() > maximumPixels)
        throw LocalizedError(tooLarge(bitmap->size()));
}

}  // namespace

HelperTextRecognizer::HelperTextRecognizer(QString program, Clock& clock)
    : HelperTextRecognizer(std::move(program), clock, Limits()) {}

HelperTextRecognizer::HelperTextRecognizer(QString program, Clock& clock, Limits limits)
    : m_program(std::move(program)), m_clock(clock), m_limits(limits) {}

HelperTextRecognizer::~HelperTextRecognizer() {
    // Also those that have been killed but not yet reaped.
    for (QProcess* helper : findChildren<QProcess*>()) {
        helper->disconnect();
        helper->kill();
        helper->waitForFinished(1000);
    }
    for (const auto& job : std::exchange(m_jobs, {})) {
        job->onStop.reset();
        job->promise.addResult(FailureReply{cancelled()});
        job->promise.finish();
    }
}

QString HelperTextRecognizer::installedProgram() {
    return QDir(QCoreApplication::applicationDirPath()).filePath(u"tralio-ocr"_s);
}

void HelperTextRecognizer::prepare() {
    if (m_isBusy)
        return;
    startHelper();
    m_helper->write(encode(Request(PrepareRequest{})));
}

// After a suspension neither coroutine touches this object, which may be gone.

QCoro::Task<QStringList> HelperTextRecognizer::supportedLanguages(std::stop_token stop) {
    const QFuture<Reply> future = submit(LanguagesRequest{}, std::move(stop));
    const Reply reply = co_await future;
    co_return expect<LanguagesReply>(reply).languages;
}

QCoro::Task<std::vector<TextObservation>> HelperTextRecognizer::recognize(
    ImageSource image, RecognitionRequest request, std::stop_token stop) {
    refuseTooLarge(image);
    const QFuture<Reply> future =
        submit(RecognizeRequest{std::move(image), std::move(request)}, std::move(stop));
    const Reply reply = co_await future;
    co_return expect<ObservationsReply>(reply).observations;
}

QFuture<Reply> HelperTextRecognizer::submit(const Request& request, std::stop_token stop) {
    auto job = std::make_shared<Job>();
    job->frame = encode(request);
    job->promise.start();
    m_jobs.push_back(job);
    QFuture<Reply> future = job->promise.future();
    // A stop may be asked for on any thread, and while the job is being made.
    job->onStop.emplace(std::move(stop), [this, weak = std::weak_ptr(job)] {
        QMetaObject::invokeMethod(
            this, [this, weak] { cancel(weak); }, Qt::QueuedConnection);
    });
    sendNext();
    return future;
}

void HelperTextRecognizer::startHelper() {
    if (m_helper)
        return;
    m_helper = new QProcess(this);
    m_frames = frames::Reader(maximumReply);
    // On a busy machine the engines' own threads make a paragraph ten times slower, and the library reads
    // this only when the process starts.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"OMP_THREAD_LIMIT"_s, u"1"_s);
    m_helper->setProcessEnvironment(environment);
    m_helper->setStandardErrorFile(QProcess::nullDevice());
    connect(m_helper, &QProcess::readyReadStandardOutput, this, &HelperTextRecognizer::readReplies);
    connect(m_helper, &QProcess::finished, this, &HelperTextRecognizer::helperEnded);
    // What cannot be started may say so from within `start`, while a job is still being sent.
    connect(
        m_helper, &QProcess::errorOccurred, this,
        [this](QProcess::ProcessError error) {
            if (error == QProcess::FailedToStart)
                giveUp(u"Không thể khởi động bộ nhận dạng."_s);
        },
        Qt::QueuedConnection);
    m_helper->start(m_program, {u"--idle-milliseconds"_s, QString::number(m_limits.idle.count())});
}

void HelperTextRecognizer::sendNext() {
    if (m_isBusy || m_jobs.empty())
        return;
    m_isBusy = true;
    startHelper();
    m_helper->write(m_jobs.front()->frame);
    limitTime(m_limits.anyRequest);
}

void HelperTextRecognizer::limitTime(std::chrono::milliseconds limit) {
    m_watchdog = m_clock.after(
        limit, [this] { giveUp(u"Bộ nhận dạng không trả lời kịp."_s); });
}

void HelperTextRecognizer::readReplies() {
    m_frames.add(m_helper->readAllStandardOutput());
    while (const std::optional<QByteArray> payload = m_frames.next()) {
        const std::optional<Reply> reply = decodeReply(*payload);
        if (!reply || !m_isBusy) {
            giveUp(u"Bộ nhận dạng trả lời không hợp lệ."_s);
            return;
        }
        handle(*reply);
        if (!m_helper)
            return;
    }
    if (m_frames.isBroken())
        giveUp(u"Bộ nhận dạng trả lời không hợp lệ."_s);
}

void HelperTextRecognizer::handle(const Reply& reply) {
    const auto* accepted = std::get_if<Accepted>(&reply);
    if (!accepted) {
        conclude(reply);
        return;
    }
    const double megapixels = 1e-6 * accepted->size.width() * accepted->size.height();
    using namespace std::chrono;
    limitTime(m_limits.anyRequest +
        duration_cast<milliseconds>(m_limits.perMegapixel * std::clamp(megapixels, 0.0, 1e3)));
}

void HelperTextRecognizer::helperEnded() {
    const bool endedByItself = m_helper->exitStatus() == QProcess::NormalExit && m_helper->exitCode() == 0;
    if (!m_isBusy || !endedByItself || m_jobs.front()->wasSentBefore) {
        giveUp(crashed());
        return;
    }
    // It ended for want of work just when work came; the next one takes it.
    m_jobs.front()->wasSentBefore = true;
    m_isBusy = false;
    dropHelper();
    sendNext();
}

void HelperTextRecognizer::giveUp(const QString& description) {
    dropHelper();
    if (m_isBusy)
        conclude(FailureReply{description});
}

void HelperTextRecognizer::conclude(Reply reply) {
    const std::shared_ptr<Job> job = m_jobs.front();
    m_jobs.pop_front();
    m_isBusy = false;
    m_watchdog.takeBack();
    job->onStop.reset();
    // Who waits resumes from the event loop, not in here.
    job->promise.addResult(std::move(reply));
    job->promise.finish();
    sendNext();
}

void HelperTextRecognizer::cancel(const std::weak_ptr<Job>& job) {
    const auto place = std::find(m_jobs.begin(), m_jobs.end(), job.lock());
    if (place == m_jobs.end())
        return;
    if (place == m_jobs.begin() && m_isBusy) {
        // The engine would go on reading, and the next image would have to wait.
        giveUp(cancelled());
        return;
    }
    const std::shared_ptr<Job> waiting = *place;
    m_jobs.erase(place);
    waiting->promise.addResult(FailureReply{cancelled()});
    waiting->promise.finish();
}

void HelperTextRecognizer::dropHelper() {
    m_watchdog.takeBack();
    QProcess* helper = std::exchange(m_helper, nullptr);
    if (!helper)
        return;
    helper->disconnect(this);
    if (helper->state() == QProcess::NotRunning) {
        helper->deleteLater();
        return;
    }
    helper->kill();
    connect(helper, &QProcess::finished, helper, &QObject::deleteLater);
}

}  // namespace tralio
