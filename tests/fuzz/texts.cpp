// Texts from other programs, on their way to the log, to the history and to the speech daemon.

#include "common/excerpt.h"
#include "fuzz/fuzz.h"
#include "history/translation_history_json.h"
#include "platform/linux/speech/speech_voices.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tralio;
    // Code units as they come: surrogates without their other halves, too.
    const QString text(reinterpret_cast<const QChar*>(data), static_cast<qsizetype>(size / 2));
    (void)excerpt(text);
    (void)withMarks(text);
    const QString sound = wellFormed(text);
    fuzz::require(sound.isValidUtf16(), "what the history keeps has a form in JSON");
    fuzz::require(wellFormed(sound) == sound, "what has one stays as it is");
    return 0;
}
