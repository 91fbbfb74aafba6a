#include "common/excerpt.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <unicode/ubrk.h>

namespace tralio {
namespace {

constexpr int excerptLength = 30;

/// Iterates over the grapheme clusters of a text, which must outlive it.
///
/// WORKAROUND: Qt 6.4's boundary finder miscounts emoji beside Thai, Devanagari, Khmer or Tibetan.
class Characters final {
public:
    explicit Characters(QStringView text) {
        constexpr qsizetype most = std::numeric_limits<int32_t>::max();
        UErrorCode error = U_ZERO_ERROR;
        m_iterator.reset(ubrk_open(
            UBRK_CHARACTER, "", text.utf16(), static_cast<int32_t>(std::min(text.size(), most)), &error));
        Q_ASSERT(U_SUCCESS(error));
    }

    /// The end of the next one; -1 after the last.
    qsizetype next() { return ubrk_next(m_iterator.get()); }

private:
    struct Close {
        void operator()(UBreakIterator* iterator) const { ubrk_close(iterator); }
    };
    std::unique_ptr<UBreakIterator, Close> m_iterator;
};

}  // namespace

qsizetype characterCount(QStringView text) {
    Characters characters(text);
    qsizetype count = 0;
    while (characters.next() >= 0)
        ++count;
    return count;
}

QString excerpt(QStringView text) {
    Characters characters(text);
    qsizetype end = 0;
    for (int count = 0; count < excerptLength; ++count) {
        const qsizetype next = characters.next();
        if (next < 0)
            break;
        end = next;
    }
    return text.first(end).toString();
}

QString shortened(const QString& text, qsizetype longest) {
    if (text.size() <= longest)
        return text;
    const bool cutsPair = longest > 0 && text.at(longest - 1).isHighSurrogate();
    return text.first(cutsPair ? longest - 1 : longest) + u'…';
}

}  // namespace tralio
