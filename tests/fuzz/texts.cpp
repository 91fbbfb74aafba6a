// Texts from other programs, on their way to the log, to the history and to the speech daemon.

#include "common/excerpt.h"
#include "fuzz/fuzz.h"
#include "history/translation_history_json.h"
#include "platform/linux/speech/speech_voices.h"

void tralio::fuzz::readInput(const QByteArray& input) {
    // Code units as they come: surrogates without their other halves, too.
    const QString text(reinterpret_cast<const QChar*>(input.constData()), input.size() / 2);
    (void)excerpt(text);
    (void)withMarks(text);
    const QString sound = wellFormed(text);
    require(sound.isValidUtf16(), "what the history keeps has a form in JSON");
    require(wellFormed(sound) == sound, "what has one stays as it is");
}
