#pragma once

#include "programs/recogniser/lines/text_lines.h"
#include "programs/recogniser/reading/reading.h"

namespace tralio {

/// How many more marks stand above the letters of a word of Latin letters than it is read with.
[[nodiscard]] int unreadMarks(const ReadWord& word, const QRectF& read, const std::vector<TextLine>& lines);

struct PoorWord {
    ReadWord* word;
    QString text;  ///< as it was read
};

/// The words that have more marks above their letters than they are read with.
[[nodiscard]] std::vector<PoorWord> wordsLackingMarks(Reading& reading, const std::vector<TextLine>& lines);

}  // namespace tralio
