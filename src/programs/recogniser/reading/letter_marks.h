#pragma once

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

}  // namespace tralio
