#include "programs/recogniser/mending/as_drawn.h"

#include "programs/recogniser/mending/commas.h"
#include "programs/recogniser/mending/figures.h"
#include "programs/recogniser/mending/thin_letters.h"
#include "programs/recogniser/mending/underscores.h"
#include "programs/recogniser/mending/wide_signs.h"

namespace tralio {

void writeAsDrawn(Reading& reading, const std::vector<TextLine>& lines) {
    restoreUnderscores(reading, lines);
    mendFigures(reading, lines);
    writeBlanksBehindCommas(reading, lines);
    mendThinLetters(reading, lines);
    writeWideSigns(reading, lines);
}

}  // namespace tralio
