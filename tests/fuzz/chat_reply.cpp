// What a server answers to a translation: a reply, or an error's body.

#include "engine/chat_completions.h"
#include "fuzz/fuzz.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tralio;
    const QByteArray body = fuzz::bytes(data, size);
    const auto text = chat_completions::replyText(body);
    fuzz::require(!text || *text == text->trimmed(), "a reply has no blanks around it");
    (void)chat_completions::errorMessage(body);
    (void)chat_completions::bodyAsMessage(body);
    return 0;
}
