#include "programs/recogniser/as_drawn.h"

#include "programs/recogniser/commas.h"
#include "programs/recogniser/figures.h"
#include "programs/recogniser/thin_letters.h"
#include "programs/recogniser/underscores.h"
#include "programs/recogniser/wide_signs.h"

namespace tralio {

void writeAsDrawn(Reading& reading, const std::vector<TextLine>& lines) {
    restoreUnderscores(reading, lines);
    mendFigures(reading, lines);
    writeBlanksBehindCommas(reading, lines);
    mendThinLetters(reading, lines);
    writeWideSigns(reading, lines);
}

}  // namespace tralio
