#pragma once

#include <QString>

#include <optional>

#include "common/observable_object.h"

namespace tralio {

class SpeechSynthesizer;
enum class ReadingEnd;

/// Reads a text aloud, in English or in Vietnamese. Used from the main thread.
class SpeechService final : public ObservableObject {
public:
    /// The synthesizer outlives the service.
    explicit SpeechService(SpeechSynthesizer& synthesizer);

    /// True from handing a text over until it has been read, cancelled or stopped.
    Observable<bool> isSpeaking{*this};

    /// The error message for a text that could not be read aloud; none since the next one was begun.
    Observable<std::optional<QString>> failure{*this};

    /// Reads `text` aloud, or if a reading is under way ends that and begins none. `languageCode` is a
    /// language's Vietnamese name or a short code: English is read as English, everything else as Vietnamese.
    void speak(const QString& text, const QString& languageCode);

    void stop();

private:
    void finish(ReadingEnd end);

    SpeechSynthesizer& m_synthesizer;
    qint64 m_utterance = 0;  ///< number of the latest utterance; the end of an earlier one changes nothing
};

}  // namespace tralio
