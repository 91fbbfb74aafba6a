// A text from the clipboard or the PRIMARY selection, in the encoding that its owner names or in none.

#include "common/text_limit.h"
#include "fuzz/fuzz.h"
#include "platform/linux/selection/clipboard_formats.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tralio;
    if (size == 0)
        return 0;
    const auto encoding = data[0] % 2 == 0 ? TextFormat::Encoding::utf8 : TextFormat::Encoding::eightBit;
    // Now and then as a text that goes on behind the limit, where the reading stopped.
    const bool isLong = data[0] == 0xfe;
    QByteArray bytes = fuzz::bytes(data + 1, size - 1);
    if (isLong)
        bytes += QByteArray(longestTextBytes + 1 - bytes.size(), 'a');
    const QString text = decodeText(bytes, encoding);
    fuzz::require(isLong || text.size() <= bytes.size(), "a letter has a byte at least");
    fuzz::require(!isLong || isTooLong(text), "what is too long is told to be");
    fuzz::require(text.size() <= 2 * (longestText + 1), "no more is kept than tells it");
    return 0;
}
