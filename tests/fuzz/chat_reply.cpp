// What a server answers to a translation: a reply, or an error's body.

#include "engine/chat_completions.h"
#include "fuzz/fuzz.h"

void tralio::fuzz::readInput(const QByteArray& input) {
    const auto text = chat_completions::replyText(input);
    require(!text || *text == text->trimmed(), "a reply has no blanks around it");
    (void)chat_completions::errorMessage(input);
    (void)chat_completions::bodyAsMessage(input);
}
