#pragma once

#include <QImage>
#include <QStringList>

#include "ocr/text_recognizer.h"
#include "programs/recogniser/block_reader.h"

namespace tralio {

/// Reads all text of a picture, whose device pixel ratio counts. `packs` are those of the languages that it
/// may be in. A picture that takes more work than the budget allows is read in part. `linesRead` is called
/// after each block of lines, also after one without text, and now and then while another thread reads.
[[nodiscard]] Reading readPicture(EnginePool& engines, const QStringList& packs, const QImage& image,
    Effort effort, const LinesRead& linesRead, WorkBudget budget = WorkBudget());

}  // namespace tralio
