#pragma once

#include <QObject>

#include <chrono>

#include "ocr/text_recognizer.h"
#include "platform/linux/helpers/helper_jobs.h"
#include "platform/linux/helpers/helper_process.h"
#include "platform/linux/helpers/recogniser_protocol.h"

namespace tralio {

/// Recognises text through a helper process, `tralio-ocr`, which holds the engines and decodes image files,
/// so that their memory is freed with it and a broken image cannot harm this process.
///
/// It handles one image at a time and is kept for a minute after the last one. If it crashes, hangs or sends
/// what is no valid frame, only the image that it was busy with fails. Used from the main thread.
class HelperTextRecognizer final : public QObject, public TextRecognizer {
public:
    struct Limits {
        std::chrono::milliseconds anyRequest = std::chrono::seconds(20);
        /// added once the image is decoded
        std::chrono::milliseconds perMegapixel = std::chrono::seconds(5);
    };

    /// `program` is the helper's path. The clock outlives the recogniser.
    HelperTextRecognizer(QString program, Clock& clock);
    HelperTextRecognizer(QString program, Clock& clock, Limits limits);
    ~HelperTextRecognizer() override;

    void prepare() override;
    [[nodiscard]] QCoro::Task<QStringList> supportedLanguages(std::stop_token stop) override;
    [[nodiscard]] QCoro::Task<std::vector<TextObservation>> recognize(
        ImageSource image, RecognitionRequest request, std::stop_token stop, LinesRead linesRead) override;

    /// The process id of the running helper, or 0.
    [[nodiscard]] qint64 helperProcessId() const { return m_helper.processId(); }

private:
    struct Details {
        std::string frame;
        Picture picture;  ///< kept alive while the helper reads it
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
    std::chrono::milliseconds m_silence{};  ///< how long the current image may take without a frame
    Jobs::Id m_current = 0;                 ///< the job that the helper works on, or 0
};

}  // namespace tralio
