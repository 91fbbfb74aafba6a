#pragma once

#include "speech/speech_synthesizer.h"
#include "support/testing.h"

namespace tralio {

/// Reads one text at a time until it is stopped, or a test ends it.
struct FakeSynthesizer final : SpeechSynthesizer {
    bool isSpeaking() const override { return reading.has_value(); }
    void speak(const Utterance& utterance, std::function<void(ReadingEnd)> onEnd) override {
        EXPECT_FALSE(reading);
        reading = utterance;
        end = [this, onEnd = std::move(onEnd)](ReadingEnd how) {
            reading.reset();
            onEnd(how);
        };
        if (onSpeak)
            onSpeak();
    }
    void stopSpeaking() override {
        reading.reset();
        ++stops;
    }

    std::optional<Utterance> reading;
    std::function<void(ReadingEnd)> end;  ///< of what it reads, or has been stopped reading
    std::function<void()> onSpeak;
    int stops = 0;
};

}  // namespace tralio
