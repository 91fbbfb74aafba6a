#include "platform/linux/helpers/helper_text_recognizer.h"

#include <qcorofuture.h>

#include <algorithm>
#include <utility>

#include "ocr/ocr_error.h"

namespace tralio {

using namespace Qt::StringLiterals;
using namespace recogniser_protocol;
using namespace std::chrono_literals;

namespace {

constexpr auto afterAnImage = 60s;

HelperProcess::Terms recognizerTerms(QString program, std::chrono::milliseconds silence) {
    return {.program = std::move(program),
        // On a busy machine the engine's OpenMP threads make a paragraph ten times slower. The library reads
        // this variable only when the process starts.
        .environment = {{u"OMP_THREAD_LIMIT"_s, u"1"_s}},
        .maximumReply = maximumReply,
        .silence = silence,
        .words = {.cannotStart = u"Không thể khởi động bộ nhận dạng."_s,
            .ended = u"Bộ nhận dạng dừng đột ngột."_s,
            .hangs = u"Bộ nhận dạng không trả lời kịp."_s,
            .talksNonsense = u"Bộ nhận dạng trả lời không hợp lệ."_s}};
}

QString cancelled() {
    return u"Đã hủy nhận dạng."_s;
}

/// The reply of the expected kind; throws for any other.
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

/// The path at which the helper opens the picture.
QString pathOf(const Picture& picture) {
    if (picture->size() > largestPicture)
        throw LocalizedError(tooLarge());
    return picture->path();
}

}  // namespace

HelperTextRecognizer::HelperTextRecognizer(QString program, Clock& clock)
    : HelperTextRecognizer(std::move(program), clock, Limits()) {}

HelperTextRecognizer::HelperTextRecognizer(QString program, Clock& clock, Limits limits)
    : m_limits(limits), m_helper(recognizerTerms(std::move(program), limits.anyRequest), clock) {
    connect(&m_helper, &HelperProcess::arrived, this, &HelperTextRecognizer::take);
    connect(&m_helper, &HelperProcess::lost, this, [this](const QString& words) {
        m_jobs.succeed(std::exchange(m_current, 0), FailureReply{words});
        sendNext();
    });
}

HelperTextRecognizer::~HelperTextRecognizer() {
    m_jobs.failAll(std::make_exception_ptr(LocalizedError(cancelled())));
}

void HelperTextRecognizer::prepare() {
    if (m_current != 0)
        return;
    m_helper.send(encode(Request(PrepareRequest{})));
    m_helper.keepFor(afterAnImage);
}

// After their suspension these two coroutines must not touch this object, which may be destroyed by then.

QCoro::Task<QStringList> HelperTextRecognizer::supportedLanguages(std::stop_token stop) {
    const QFuture<Reply> future = submit(LanguagesRequest{}, stop);
    const Reply reply = co_await future;
    co_return expect<LanguagesReply>(reply).languages;
}

QCoro::Task<std::vector<TextObservation>> HelperTextRecognizer::recognize(
    ImageSource image, RecognitionRequest request, std::stop_token stop, LinesRead linesRead) {
    Picture picture = std::holds_alternative<Picture>(image) ? std::get<Picture>(image) : nullptr;
    const QString file = picture ? pathOf(picture) : std::get<QUrl>(image).toLocalFile();
    const QFuture<Reply> future = submit(
        RecognizeRequest{file, std::move(request)}, stop, {{}, std::move(picture), std::move(linesRead)});
    const Reply reply = co_await future;
    co_return expect<ObservationsReply>(reply).observations;
}

QFuture<Reply> HelperTextRecognizer::submit(
    const Request& request, const std::stop_token& stop, Details details) {
    details.frame = encode(request);
    const Jobs::Id id =
        m_jobs.add(std::move(details), stop, this, [this](Jobs::Id stopped) { cancel(stopped); });
    QFuture<Reply> future = m_jobs.future(id);
    sendNext();
    return future;
}

void HelperTextRecognizer::sendNext() {
    if (m_current != 0 || m_jobs.isEmpty())
        return;
    m_current = m_jobs.first();
    m_helper.send(m_jobs.find(m_current)->frame);
    m_helper.setAtWork(true);
    m_helper.allowSilence(m_limits.anyRequest);
}

void HelperTextRecognizer::take(const std::string& payload) {
    std::optional<Reply> reply = decodeReply(payload);
    if (!reply || m_current == 0) {
        m_helper.refuse();
        return;
    }
    if (const auto* accepted = std::get_if<Accepted>(&*reply)) {
        const double megapixels = 1e-6 * accepted->size.width() * accepted->size.height();
        using std::chrono::duration_cast, std::chrono::milliseconds;
        m_silence = m_limits.anyRequest +
            duration_cast<milliseconds>(m_limits.perMegapixel * std::clamp(megapixels, 0.0, 1e3));
        m_helper.allowSilence(m_silence);
        return;
    }
    if (const auto* progress = std::get_if<Progress>(&*reply)) {
        m_helper.allowSilence(m_silence);
        if (const Details* job = m_jobs.find(m_current); job && job->linesRead)
            LinesRead(job->linesRead)(progress->lines);  // a copy: the call may stop the job
        return;
    }
    m_jobs.succeed(std::exchange(m_current, 0), *std::move(reply));
    m_helper.keepFor(afterAnImage);
    sendNext();
    m_helper.setAtWork(m_current != 0);
}

void HelperTextRecognizer::cancel(Jobs::Id id) {
    // The engine cannot be interrupted, and the next image would have to wait for it.
    if (id == m_current)
        m_helper.giveUp(cancelled());
    else
        m_jobs.succeed(id, FailureReply{cancelled()});
}

}  // namespace tralio
