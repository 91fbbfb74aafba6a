#pragma once

#include "programs/recogniser/lines/text_lines.h"
#include "programs/recogniser/reading/marks_above.h"
#include "programs/recogniser/reading/reading.h"

namespace tralio {

/// A text without the accents, tone marks, horns, hooks and bars of its letters, and how many there were.
struct Letters {
    QString plain;
    int marks = 0;
};
[[nodiscard]] Letters splitMarks(const QString& text);

/// Takes the words of another reading of the same lines that are the same but for more marks, and tells
/// whether there are any.
bool adoptMarks(std::span<ReadLine> lines, const Reading& marked);

/// Takes the words of another reading of the same lines that are the same but for their marks, where that is
/// surer of them by a margin. Marks are never lost by that.
void adoptSurerMarks(std::span<ReadLine> lines, const Reading& other, double margin = 2);

/// Takes for some of the words those of another reading that are the same but have just the marks that are
/// drawn, those that were read among them, the surest if there are several.
void adoptDrawnMarks(std::span<ReadLine> lines, const Reading& other, const std::vector<TextLine>& drawn,
    const std::vector<PoorWord>& poor);

}  // namespace tralio
