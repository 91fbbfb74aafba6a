#pragma once

#include "programs/recogniser/reading/reading.h"

namespace tralio {

/// Both readings of one image, each line from the one that reads it with the greater confidence. The second
/// one's engine is that of another script than Latin: a line of it counts only if it is in that script, and
/// better by `margin`.
[[nodiscard]] Reading bestLines(const Reading& first, const Reading& second, double margin);

enum class ScriptKind { latin, other };

/// Takes words in a script that the reading's engine does not write from that of one which does, where it is
/// much surer of them: names in the middle of a foreign line.
void adoptWords(Reading& reading, const Reading& other, ScriptKind script);

/// Whether what it has of another script than Latin are just letters that Latin ones look like.
[[nodiscard]] bool mayBeLatin(const QString& text, double confidence);

/// Adds the lines of another reading that it lacks: a picture of the brighter marks has no dark lines.
void addMissingLines(Reading& reading, const Reading& other, bool isInPhotograph);

}  // namespace tralio
