#include "common/excerpt.h"

#include <QTextBoundaryFinder>

#include <algorithm>

namespace tralio {
namespace {

constexpr qsizetype excerptLength = 30;

}  // namespace

qsizetype characterCount(QStringView text) {
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text.data(), text.size());
    qsizetype count = 0;
    while (finder.toNextBoundary() != -1)
        ++count;
    return count;
}

QString excerpt(QStringView text) {
    // The finder analyses all it is given, and a text may be long. Enough for thirty ordinary characters
    // usually does; a letter under thousands of accents takes more.
    for (qsizetype size = 1024;; size *= 2) {
        const QStringView head = text.first(std::min(text.size(), size));
        QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, head.data(), head.size());
        qsizetype end = 0;
        for (qsizetype count = 0; count < excerptLength; ++count) {
            const qsizetype next = finder.toNextBoundary();
            if (next == -1)
                break;
            end = next;
        }
        // Where the head was cut there need be no boundary, nor just before half a surrogate pair.
        if (head.size() == text.size() || end + 1 < head.size())
            return head.first(end).toString();
    }
}

}  // namespace tralio
