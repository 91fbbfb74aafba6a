#pragma once

#include <QObject>

#include <chrono>

#include "ocr/text_recognizer.h"
#include "platform/linux/helpers/helper_jobs.h"
#include "platform/linux/helpers/helper_process.h"
#include "platform/linux/helpers/recogniser_protocol.h"

namespace tralio {

/// Has text recognised by a process of ours, `tralio-ocr`, which holds the engines and decodes what comes
/// from files, so that neither their size nor a broken image is felt here.
///
/// It serves one image after the other, and is kept for a minute after the last one. One that crashes, hangs
/// or talks nonsense costs only the image that it was busy with. Used from the main thread.
class HelperTextRecognizer final : public QObject, public TextRecognizer {
public:
    struct Limits {
        std::chrono::milliseconds anyRequest = std::chrono::seconds(20);
        std::chrono::milliseconds perMegapixel = std::chrono::seconds(5);  ///< on top, for a decoded image
    };

    /// `program` is the helper's path. The clock outlives the recogniser.
    HelperTextRecognizer(QString program, Clock& clock);
    HelperTextRecognizer(QString program, Clock& clock, Limits limits);
    ~HelperTextRecognizer() override;

    void prepare() override;
    [[nodiscard]] QCoro::Task<QStringList> supportedLanguages(std::stop_token stop) override;
    [[nodiscard]] QCoro::Task<std::vector<TextObservation>> recognize(
        ImageSource image, RecognitionRequest request, std::stop_token stop, LinesRead linesRead) override;

    /// The running helper's process, or 0.
    [[nodiscard]] qint64 helperProcessId() const { return m_helper.processId(); }

private:
    struct Details {
        std::string frame;
        Picture picture;  ///< that has to be there while the helper reads it
        LinesRead linesRead;
    };
    using Jobs = HelperJobs<recogniser_protocol::Reply, Details>;

    [[nodiscard]] QFuture<recogniser_protocol::Reply> submit(
        const recogniser_protocol::Request& request, const std::stop_token& stop, Details details = {});
    void sendNext();
    void take(const std::string& payload);
    void cancel(Jobs::Id id);

    Limits m_limits;
    HelperProcess m_helper;
    Jobs m_jobs;
    std::chrono::milliseconds m_silence{};  ///< that the image under way is allowed
    Jobs::Id m_current = 0;                 ///< the job that is with the helper, or 0
};

}  // namespace tralio
