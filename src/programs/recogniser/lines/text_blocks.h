#pragma once

#include <vector>

#include "programs/recogniser/lines/text_lines.h"

namespace tralio {

/// Lines one below the other, of one region and size, that are read together.
struct TextBlock {
    std::vector<TextLine> lines;  ///< from the top
    QRect box;
    int region = 0;
    bool isShaded = false;
    TextMarks::Kind kind = TextMarks::Kind::difference;
    QRgb colour = 0;

    /// The usual height of its letters, or 0 where there are too few to tell.
    [[nodiscard]] int letterHeight() const;
};

/// The blocks, from the top of the picture. Columns, cells and headlines are blocks of their own, and a long
/// column is several.
[[nodiscard]] std::vector<TextBlock> groupIntoBlocks(std::vector<TextLine> lines);

/// A block's picture as the recogniser takes it: dark marks on white, enlarged to where small letters read
/// well, with a border.
struct BlockPicture {
    Plane plane;
    double scale = 1;  ///< pixels of the picture for one of the image
    QPointF origin;    ///< of the picture in the image

    [[nodiscard]] QRectF inImage(const QRectF& box) const {
        return {box.topLeft() / scale + origin, box.size() / scale};
    }

    /// What is between two heights of the image, which may be beyond the picture.
    [[nodiscard]] BlockPicture strip(double top, double bottom) const;
};

/// Makes the pictures of one block after the other, without what belongs to its neighbours.
class BlockPainter {
public:
    /// All outlive the painter.
    BlockPainter(const TextMarks& marks, const MarkShapes& shapes, const std::vector<TextBlock>& blocks);

    [[nodiscard]] BlockPicture paint(const TextBlock& block, TextMarks::Kind kind) const;

    /// How much of both brighter and darker marks the block has.
    [[nodiscard]] double balanceOf(const TextBlock& block) const;

private:
    [[nodiscard]] QRect frameOf(const TextBlock& block) const;

    const TextMarks& m_marks;
    const MarkShapes& m_shapes;
    const std::vector<TextBlock>& m_blocks;
};

}  // namespace tralio
