#pragma once

#include <QStringList>
#include <QUrl>
#include <qcorotask.h>

#include <functional>
#include <optional>
#include <stop_token>
#include <variant>
#include <vector>

#include "common/picture.h"
#include "ocr/text_observation.h"

namespace tralio {

/// What a recogniser reads. A file comes from anywhere too, and is opened only by the recogniser, which keeps
/// what a broken one does to a decoder away from this process.
using ImageSource = std::variant<Picture, QUrl>;

/// The key of the text in a PNG file that tells its device pixel ratio ("2"). Letters of a dense screen need
/// less enlarging.
inline constexpr QStringView devicePixelRatioKey = u"DevicePixelRatio";

struct RecognitionRequest {
    enum class Level { accurate, fast };

    Level level = Level::accurate;
    /// By dictionaries. A recogniser may be unable to do without.
    bool usesLanguageCorrection = true;
    std::optional<QStringList> languages;  ///< tags, most wanted first; absent for the recogniser's default

    bool operator==(const RecognitionRequest&) const = default;
};

/// Called while an image is read, with the number of lines read so far.
using LinesRead = std::function<void(qsizetype lines)>;

/// Finds lines of text in an image. Used from the main thread, where callers resume.
class TextRecognizer {
public:
    TextRecognizer() = default;
    TextRecognizer(const TextRecognizer&) = delete;
    TextRecognizer& operator=(const TextRecognizer&) = delete;
    virtual ~TextRecognizer() = default;

    /// A hint that an image will follow soon; whatever takes its time may be made ready meanwhile.
    virtual void prepare() = 0;

    /// Fails with a `LocalizedError`.
    [[nodiscard]] virtual QCoro::Task<QStringList> supportedLanguages(std::stop_token stop) = 0;

    /// The lines in an order of the recogniser's own, which may be none. Fails with `OCRError::invalidImage`
    /// for bytes that are no image, with another `LocalizedError` for all else, also when stopped.
    [[nodiscard]] virtual QCoro::Task<std::vector<TextObservation>> recognize(
        ImageSource image, RecognitionRequest request, std::stop_token stop, LinesRead linesRead) = 0;
};

}  // namespace tralio
