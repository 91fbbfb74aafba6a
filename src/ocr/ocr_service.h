#pragma once

#include <QString>
#include <QUrl>
#include <qcorotask.h>

#include <stop_token>

#include "ocr/text_recognizer.h"

namespace tralio {

/// Turns an image into plain text: the recogniser's lines in reading order, one below the other.
///
/// Nothing is kept between calls; several may be under way at once. A call may outlive the service, but not
/// the recogniser. Used from the main thread, where callers resume.
class OCRService final {
public:
    explicit OCRService(TextRecognizer& recognizer);

    /// Tells the recogniser that an image will follow soon.
    void prepare();

    /// The text of an image, never blank. Fails with an `OCRError`; requesting `stop` ends the recognition,
    /// which then fails.
    [[nodiscard]] QCoro::Task<QString> recognizeText(
        Picture image, std::stop_token stop = {}, LinesRead linesRead = {});
    [[nodiscard]] QCoro::Task<QString> recognizeText(
        QUrl fileURL, std::stop_token stop = {}, LinesRead linesRead = {});

private:
    TextRecognizer& m_recognizer;
};

}  // namespace tralio
