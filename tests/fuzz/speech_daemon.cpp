// What the speech daemon says, and the voices that it lists.

#include "fuzz/fuzz.h"
#include "platform/linux/speech/speech_voices.h"
#include "platform/linux/speech/ssip_reader.h"

void tralio::fuzz::readInput(const QByteArray& input) {
    SsipReader reader;
    reader.onReply = [](const SsipReader::Reply& reply) { (void)languagesOf(reply.data); };
    reader.onEvent = [](SsipReader::Event, qint64) {};
    const qsizetype half = input.size() / 2;
    if (reader.add(input.first(half)))
        (void)reader.add(input.sliced(half));
}
