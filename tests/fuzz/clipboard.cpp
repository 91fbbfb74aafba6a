// A text from the clipboard or the PRIMARY selection, in the encoding that its owner names or in none.

#include "common/text_limit.h"
#include "fuzz/fuzz.h"
#include "platform/linux/selection/clipboard_formats.h"

void tralio::fuzz::readInput(const QByteArray& input) {
    const auto kind = static_cast<quint8>(input.isEmpty() ? 0 : input.front());
    const auto encoding = kind % 2 == 0 ? TextFormat::Encoding::utf8 : TextFormat::Encoding::eightBit;
    // Now and then as a text that goes on behind the limit, where the reading stopped.
    const bool isLong = kind == 0xfe;
    QByteArray bytes = input.mid(1);
    if (isLong)
        bytes += QByteArray(longestTextBytes + 1 - bytes.size(), 'a');
    const QString text = decodeText(bytes, encoding);
    require(isLong || text.size() <= bytes.size(), "a letter has a byte at least");
    require(!isLong || isTooLong(text), "what is too long is told to be");
    require(text.size() <= 2 * (longestText + 1), "no more is kept than tells it");
}
