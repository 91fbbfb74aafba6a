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

    /// From the moment a text is handed over until it has been read, was cancelled or was stopped.
    Observable<bool> isSpeaking{*this};

    /// Why the last text was not read, in the words that the user is shown; none since another was begun.
    Observable<std::optional<QString>> failure{*this};

    /// Reads `text`, or ends the reading that is under way and does not begin a new one. `languageCode` is a
    /// language's Vietnamese name or a short code: English is read as such, everything else as Vietnamese.
    void speak(const QString& text, const QString& languageCode);

    void stop();

private:
    void finish(ReadingEnd end);

    SpeechSynthesizer& m_synthesizer;
    qint64 m_utterance = 0;  ///< the latest one's number; the end of an earlier one changes nothing
};

}  // namespace tralio
