#include "programs/recogniser/picture_reader.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "programs/recogniser/even_lines.h"

namespace tralio {
namespace {

std::vector<TextBlock> findBlocks(const TextMarks& marks, const MarkShapes& shapes) {
    std::vector<TextLine> lines = findTextLines(shapes.shapes, marks.unit());
    const auto shaded = std::stable_partition(lines.begin(), lines.end(),
        [&](const TextLine& line) { return !marks.ground().isShaded(line.region); });
    std::vector<TextLine> even = evenLines({std::move_iterator(shaded), std::move_iterator(lines.end())});
    lines.erase(shaded, lines.end());
    lines.insert(lines.end(), std::move_iterator(even.begin()), std::move_iterator(even.end()));
    return groupIntoBlocks(std::move(lines));
}

}  // namespace

Reading readPicture(EnginePool& engines, const QStringList& packs, const QImage& image, Effort effort,
    const LinesRead& linesRead, WorkBudget budget) {
    const TextMarks marks(image);
    const MarkShapes shapes = findMarkShapes(marks);
    const std::vector<TextBlock> blocks = findBlocks(marks, shapes);
    const BlockPainter painter(marks, shapes, blocks);
    BlockReader reader(engines, packs, painter, budget);
    Reading all;
    for (const TextBlock& block : blocks) {
        if (!budget.allowsMore())
            break;
        Reading part = reader.read(block, effort);
        all.lines.insert(
            all.lines.end(), std::move_iterator(part.lines.begin()), std::move_iterator(part.lines.end()));
        linesRead(std::ssize(all.lines));
    }
    return all;
}

}  // namespace tralio
