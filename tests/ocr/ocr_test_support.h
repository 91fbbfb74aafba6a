#pragma once

#include <qcorofuture.h>

#include "ocr/capture_tool.h"
#include "ocr/ocr_error.h"
#include "ocr/ocr_service.h"
#include "support/ending.h"

namespace tralio {

inline void PrintTo(const OCRError& error, std::ostream* out) {
    *out << error.what();
}

/// A recogniser that answers what a test wrote down, at once or from the event loop.
struct ScriptedRecognizer final : TextRecognizer {
    using Answer = std::function<std::vector<TextObservation>()>;

    void prepare() override { ++preparations; }

    QCoro::Task<QStringList> supportedLanguages(std::stop_token) override {
        if (!supported)
            throw LocalizedError(QStringLiteral("no languages"));
        co_return *supported;
    }

    QCoro::Task<std::vector<TextObservation>> recognize(
        ImageSource image, RecognitionRequest request, std::stop_token stop, LinesRead linesRead) override {
        stops.push_back(std::move(stop));
        counts.push_back(std::move(linesRead));
        images.push_back(std::move(image));
        requests.push_back(std::move(request));
        if (onRecognize)
            onRecognize();
        if (const auto held = hold)
            co_await held->future();
        if (isSlow) {
            QPromise<void> turn;
            turn.start();
            QMetaObject::invokeMethod(
                &context, [&turn] { turn.finish(); }, Qt::QueuedConnection);
            co_await turn.future();
        }
        co_return answer();
    }

    void reads(std::vector<TextObservation> observations) {
        answer = [observations = std::move(observations)] { return observations; };
    }

    std::optional<QStringList> supported = QStringList{};
    Answer answer = [] { return std::vector<TextObservation>(); };
    std::function<void()> onRecognize;
    bool isSlow = false;
    std::shared_ptr<QPromise<void>> hold;  ///< what begins now ends no earlier than this
    int preparations = 0;
    std::vector<ImageSource> images;
    std::vector<RecognitionRequest> requests;
    std::vector<std::stop_token> stops;
    std::vector<LinesRead> counts;
    QObject context;
};

/// The user at the region picker: draws something, or cancels.
struct DrawnRegion final : CaptureTool {
    QCoro::Task<qint32> run(QString outputPath) override {
        if (onRun)
            onRun();
        if (draws)
            writeFile(outputPath, "a picture");
        co_return 0;
    }
    [[nodiscard]] bool isOrdinaryWindow() const override { return isWindow; }

    bool draws = true;
    bool isWindow = false;
    std::function<void()> onRun;
};

}  // namespace tralio
