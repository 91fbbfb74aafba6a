#include "programs/recogniser/mending/as_drawn.h"

#include "programs/recogniser/mending/accents.h"
#include "programs/recogniser/mending/commas.h"
#include "programs/recogniser/mending/figures.h"
#include "programs/recogniser/mending/quotes.h"
#include "programs/recogniser/mending/solid_blanks.h"
#include "programs/recogniser/mending/thin_letters.h"
#include "programs/recogniser/mending/underscores.h"
#include "programs/recogniser/mending/wide_signs.h"

namespace tralio {

void writeAsDrawn(Reading& reading, const std::vector<TextLine>& lines, const BlockPicture& picture) {
    restoreUnderscores(reading, lines);
    mendFigures(reading, lines);
    writeBlanksBehindCommas(reading, lines);
    mendThinLetters(reading, lines);
    tellQuotes(reading, lines, picture);
    tellAccents(reading, lines, picture);
    writeWideSigns(reading, lines);
    writeBlanksBetweenSigns(reading, lines);
}

}  // namespace tralio
