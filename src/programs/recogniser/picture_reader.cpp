#include "programs/recogniser/picture_reader.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <utility>

#include "ocr/reading_order.h"
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

/// Of a tall picture, lines that are one below the other are so near by its measure that the reading order
/// takes them for one row, and goes by where they begin: an indented line would be read out of its place.
/// Those of a column get one left edge there, so that they keep the order they have.
void alignColumns(Reading& reading, const std::vector<int>& columns, int pictureHeight) {
    const double tolerance = leastRowTolerance * pictureHeight;
    for (int column = 0, last = 0; column <= last; ++column) {
        double left = std::numeric_limits<double>::max();
        bool isDense = false;
        const QRectF* above = nullptr;
        for (size_t i = 0; i < columns.size(); ++i) {
            last = std::max(last, columns[i]);
            if (columns[i] != column)
                continue;
            const QRectF& box = reading.lines[i].box;
            left = std::min(left, box.left());
            const double below = above != nullptr ? box.center().y() - above->center().y() : 0;
            isDense |= below > box.height() / 2 && below <= tolerance;
            above = &box;
        }
        for (size_t i = 0; isDense && i < columns.size(); ++i)
            if (columns[i] == column)
                reading.lines[i].box.setLeft(left);
    }
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
    std::vector<int> columns;  // of the lines
    for (const TextBlock& block : blocks) {
        if (!budget.allowsMore())
            break;
        Reading part = reader.read(block, effort);
        all.lines.insert(
            all.lines.end(), std::move_iterator(part.lines.begin()), std::move_iterator(part.lines.end()));
        columns.resize(all.lines.size(), block.column);
        linesRead(std::ssize(all.lines));
    }
    alignColumns(all, columns, image.height());
    return all;
}

}  // namespace tralio
