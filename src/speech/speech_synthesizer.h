#pragma once

#include <QString>
#include <QStringList>

#include <functional>

namespace tralio {

/// A text to be read with a synthesizer's default rate, pitch and volume.
struct Utterance {
    QString text;
    QStringList voices;  ///< language tags, most wanted first; with none of them the default voice reads

    bool operator==(const Utterance&) const = default;
};

/// How a reading came to its end.
enum class ReadingEnd {
    over,   ///< read, or cancelled
    failed  ///< nothing there can read it, or be heard
};

/// What reads a text aloud, one at a time. Used from the main thread, which no operation holds up.
class SpeechSynthesizer {
public:
    SpeechSynthesizer() = default;
    SpeechSynthesizer(const SpeechSynthesizer&) = delete;
    SpeechSynthesizer& operator=(const SpeechSynthesizer&) = delete;
    virtual ~SpeechSynthesizer() = default;

    /// Whether an utterance was taken that has neither ended nor been stopped.
    [[nodiscard]] virtual bool isSpeaking() const = 0;

    /// Takes an utterance; only while there is none. `onEnd` is called once, from a thread of the
    /// synthesizer's choice.
    virtual void speak(const Utterance& utterance, std::function<void(ReadingEnd)> onEnd) = 0;

    /// Falls silent at once, in the middle of a word.
    virtual void stopSpeaking() = 0;
};

}  // namespace tralio
