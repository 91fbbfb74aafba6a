#include "programs/recogniser/picture_reader.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <map>
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

/// Gives lines of a column one left edge, but for one beside which another would come to stand on the wrong
/// side of it.
void align(std::vector<ReadLine>& lines, const std::vector<size_t>& run) {
    double left = std::numeric_limits<double>::max();
    for (const size_t line : run)
        left = std::min(left, lines[line].box.left());
    for (const size_t line : run) {
        QRectF& box = lines[line].box;
        const bool hasNeighbour = std::ranges::any_of(lines, [&](const ReadLine& other) {
            return other.box.left() < box.left() && other.box.left() >= left && shareHeight(other.box, box);
        });
        if (!hasNeighbour)
            box.setLeft(left);
    }
}

/// Of a tall picture, lines that are one below the other are so near by its measure that the reading order
/// takes them for one row, and goes by where they begin: an indented line would be read out of its place.
/// Such lines of a column get one left edge, so that they keep the order they have.
void alignColumns(Reading& reading, const std::vector<int>& columns, int pictureHeight) {
    const double tolerance = leastRowTolerance * pictureHeight;
    std::map<int, std::vector<size_t>> runs;  // by column, of lines that near
    for (size_t i = 0; i < columns.size(); ++i) {
        std::vector<size_t>& run = runs[columns[i]];
        const QRectF& box = reading.lines[i].box;
        const double below = run.empty() ? 0 : box.center().y() - reading.lines[run.back()].box.center().y();
        if (below <= box.height() / 2 || below > tolerance) {
            align(reading.lines, run);
            run.clear();
        }
        run.push_back(i);
    }
    for (const auto& [column, run] : runs)
        align(reading.lines, run);
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
