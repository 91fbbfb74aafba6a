// The stored history, which anything may have damaged.

#include "fuzz/fuzz.h"
#include "history/translation_history_json.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tralio;
    const auto items = decodeHistory(fuzz::bytes(data, size));
    if (items)
        fuzz::require(
            decodeHistory(encodeHistory(*items)) == items, "what was read is written and read again");
    return 0;
}
