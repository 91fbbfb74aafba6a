#pragma once

#include <QImage>
#include <QStringList>

#include <functional>

#include "programs/recogniser/block_reader.h"

namespace tralio {

/// Called with the number of lines read so far, after each block of them, also after one without text.
using LinesRead = std::function<void(size_t lines)>;

/// Reads all text of a picture, whose device pixel ratio counts. `packs` are those of the languages that it
/// may be in. A picture that takes more work than one is worth is read in part, from the top.
[[nodiscard]] Reading readPicture(EnginePool& engines, const QStringList& packs, const QImage& image,
    Effort effort, const LinesRead& linesRead);

}  // namespace tralio
