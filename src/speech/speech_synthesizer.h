#pragma once

#include <QString>
#include <QStringList>

#include <functional>

namespace tralio {

/// A text to be read with the synthesizer's default rate, pitch and volume.
struct Utterance {
    QString text;
    /// language tags, most wanted first; if there is none of them, the default voice reads
    QStringList voices;

    bool operator==(const Utterance&) const = default;
};

/// How a reading ended.
enum class ReadingEnd {
    over,   ///< read to the end, or cancelled
    failed  ///< nothing can read it, or no sound can be heard
};

/// Reads texts aloud, one at a time. Used from the main thread; no operation blocks it.
class SpeechSynthesizer {
public:
    SpeechSynthesizer() = default;
    SpeechSynthesizer(const SpeechSynthesizer&) = delete;
    SpeechSynthesizer& operator=(const SpeechSynthesizer&) = delete;
    virtual ~SpeechSynthesizer() = default;

    /// Whether there is an utterance that has neither ended nor been stopped.
    [[nodiscard]] virtual bool isSpeaking() const = 0;

    /// Begins an utterance; only allowed while there is none. `onEnd` is called once, on any thread.
    virtual void speak(const Utterance& utterance, std::function<void(ReadingEnd)> onEnd) = 0;

    /// Stops at once, in the middle of a word.
    virtual void stopSpeaking() = 0;
};

}  // namespace tralio
