// The stored history, which anything may have damaged.

#include "fuzz/fuzz.h"
#include "history/translation_history_json.h"

void tralio::fuzz::readInput(const QByteArray& input) {
    if (const auto items = decodeHistory(input))
        require(decodeHistory(encodeHistory(*items)) == items, "what was read is written and read again");
}
