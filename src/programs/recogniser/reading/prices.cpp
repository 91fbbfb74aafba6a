#include "programs/recogniser/reading/prices.h"

#include <algorithm>

namespace tralio {

bool isCurrency(QChar c) {
    return c.category() == QChar::Symbol_Currency;
}

bool isOfFigure(QChar c) {
    return c.isDigit() || c == u'.' || c == u',' || c == u' ';
}

qsizetype digitsIn(const QString& text) {
    return std::ranges::count_if(
        text, [](QChar c) { return c.isDigit(); });
}

bool isPrice(const QString& text) {
    constexpr qsizetype fewest = 2;
    return (digitsIn(text) >= fewest || text.size() == 1) && std::ranges::count_if(text, isCurrency) == 1 &&
        std::ranges::all_of(text, [](QChar c) { return isOfFigure(c) || isCurrency(c); });
}

}  // namespace tralio
