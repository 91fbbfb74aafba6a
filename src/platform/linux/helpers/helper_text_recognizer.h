#pragma once

#include <QFuture>
#include <QObject>
#include <QProcess>

#include <chrono>
#include <deque>
#include <memory>

#include "common/clock.h"
#include "ocr/text_recognizer.h"
#include "platform/linux/helpers/frames.h"
#include "platform/linux/helpers/recogniser_protocol.h"

namespace tralio {

/// Recognises text in a helper process, which holds the engines and decodes what comes from files, so that
/// neither their size nor a broken image is felt here.
///
/// The helper starts when it is first needed, serves one image after the other, and ends by itself when it
/// has had no work for a while. One that crashes, hangs or talks nonsense is ended and costs only the image
/// that it was busy with. Used from the main thread.
class HelperTextRecognizer final : public QObject, public TextRecognizer {
public:
    struct Limits {
        std::chrono::milliseconds idle = std::chrono::minutes(1);  ///< after which the helper ends
        std::chrono::milliseconds anyRequest = std::chrono::seconds(20);
        std::chrono::milliseconds perMegapixel = std::chrono::seconds(5);  ///< on top, for a decoded image
    };

    /// `program` is the helper's path. The clock outlives the recogniser.
    HelperTextRecognizer(QString program, Clock& clock);
    HelperTextRecognizer(QString program, Clock& clock, Limits limits);
    ~HelperTextRecognizer() override;

    /// The helper that is installed beside the running program.
    [[nodiscard]] static QString installedProgram();

    void prepare() override;
    [[nodiscard]] QCoro::Task<QStringList> supportedLanguages(std::stop_token stop) override;
    [[nodiscard]] QCoro::Task<std::vector<TextObservation>> recognize(
        ImageSource image, RecognitionRequest request, std::stop_token stop) override;

    /// The running helper's process, or 0.
    [[nodiscard]] qint64 helperProcessId() const { return m_helper ? m_helper->processId() : 0; }

private:
    struct Job;

    [[nodiscard]] QFuture<recogniser_protocol::Reply> submit(
        const recogniser_protocol::Request& request, std::stop_token stop);
    void startHelper();
    void sendNext();
    void readReplies();
    void handle(const recogniser_protocol::Reply& reply);
    void helperEnded();
    void limitTime(std::chrono::milliseconds limit);
    void giveUp(const QString& description);
    void conclude(recogniser_protocol::Reply reply);
    void cancel(const std::weak_ptr<Job>& job);
    void dropHelper();

    QString m_program;
    Clock& m_clock;
    Limits m_limits;
    QProcess* m_helper = nullptr;
    frames::Reader m_frames{recogniser_protocol::maximumReply};
    std::deque<std::shared_ptr<Job>> m_jobs;  ///< the first one is with the helper if `m_isBusy`
    bool m_isBusy = false;
    ScheduledCall m_watchdog;  ///< ends a helper that hangs
};

}  // namespace tralio
