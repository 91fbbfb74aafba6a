#include "ocr/ocr_service.h"

#include <algorithm>
#include <array>
#include <exception>
#include <utility>

#include "ocr/ocr_error.h"
#include "ocr/reading_order.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

/// Most wanted first. Recognisers differ in how they write Vietnamese.
constexpr std::array<QStringView, 10> preferredLanguages{
    u"vi-VT", u"vi-VN", u"en-US", u"zh-Hans", u"ja-JP", u"ko-KR", u"fr-FR", u"de-DE", u"es-ES", u"ru-RU"};

/// The preferred languages that the recogniser knows; none means that it uses its own default.
QCoro::Task<std::optional<QStringList>> chooseLanguages(TextRecognizer& recognizer, std::stop_token stop) {
    QStringList supported;
    try {
        supported = co_await recognizer.supportedLanguages(std::move(stop));
    } catch (const std::exception&) {
        // What the recogniser reads by default may still be what the user needs.
        co_return std::nullopt;
    }
    QStringList chosen;
    for (const QStringView language : preferredLanguages)
        if (supported.contains(language))
            chosen += language.toString();
    co_return chosen.isEmpty() ? std::nullopt : std::optional(chosen);
}

QString joined(const std::vector<TextObservation>& observations) {
    QStringList lines;
    for (const TextObservation& observation : observations) {
        const QString line = observation.candidates.value(0).trimmed();
        if (!line.isEmpty())
            lines += line;
    }
    return lines.join(u'\n');
}

/// A coroutine without a service, which may be gone when it resumes.
QCoro::Task<QString> textOf(
    TextRecognizer& recognizer, ImageSource image, std::stop_token stop, LinesRead linesRead) {
    const std::optional<QStringList> languages = co_await chooseLanguages(recognizer, stop);
    if (stop.stop_requested())
        throw OCRError::noTextFound();  // nobody waits for it
    std::vector<TextObservation> observations;
    try {
        const RecognitionRequest request{.languages = languages};
        observations = co_await recognizer.recognize(std::move(image), request, stop, std::move(linesRead));
    } catch (const OCRError&) {
        throw;
    } catch (const LocalizedError& error) {
        throw OCRError::recognitionFailed(error.errorDescription());
    } catch (const std::exception& error) {
        throw OCRError::recognitionFailed(QString::fromUtf8(error.what()));
    }
    sortIntoReadingOrder(observations);
    const QString text = joined(observations);
    if (text.isEmpty())
        throw OCRError::noTextFound();
    co_return text;
}

}  // namespace

OCRService::OCRService(TextRecognizer& recognizer) : m_recognizer(recognizer) {}

void OCRService::prepare() {
    m_recognizer.prepare();
}

QCoro::Task<QString> OCRService::recognizeText(Picture image, std::stop_token stop, LinesRead linesRead) {
    if (!image)
        throw OCRError::invalidImage();
    ImageSource source = std::move(image);
    co_return co_await textOf(m_recognizer, std::move(source), std::move(stop), std::move(linesRead));
}

QCoro::Task<QString> OCRService::recognizeText(QUrl fileURL, std::stop_token stop, LinesRead linesRead) {
    if (!fileURL.isLocalFile())
        throw OCRError::invalidImage();
    ImageSource source = std::move(fileURL);
    co_return co_await textOf(m_recognizer, std::move(source), std::move(stop), std::move(linesRead));
}

}  // namespace tralio
