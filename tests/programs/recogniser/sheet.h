#pragma once

#include <QPainter>

#include <random>

#include "programs/recogniser/lines/text_blocks.h"

namespace tralio {

/// A picture on which boxes stand for letters, each with a hole like an "o".
struct Sheet {
    Sheet(int width, int height, QColor paper = Qt::white) : m_image(width, height, QImage::Format_RGB32) {
        m_image.fill(paper);
    }

    Sheet& fill(const QRect& box, QColor colour) {
        QPainter(&m_image).fillRect(box, colour);
        return *this;
    }

    /// Letters of that height from there on, two thirds as wide, with a third between them.
    Sheet& type(QPoint at, int count, int height, QColor ink = Qt::black) {
        QPainter painter(&m_image);
        const int stroke = std::max(1, height / 6);
        for (int i = 0; i < count; ++i) {
            const QRect box(at + QPoint(i * height, 0), QSize(height * 2 / 3, height));
            const QRect hole = box.adjusted(stroke, stroke, -stroke, -stroke);
            painter.setClipRegion(QRegion(box) - hole);
            painter.fillRect(box, ink);
        }
        return *this;
    }

    /// Paper as a scanner sees it.
    Sheet& addGrain(unsigned levels) {
        std::mt19937 random(5);
        for (int y = 0; y < m_image.height(); ++y)
            for (int x = 0; x < m_image.width(); ++x)
                m_image.setPixelColor(
                    x, y, m_image.pixelColor(x, y).lighter(static_cast<int>(100 - random() % levels)));
        return *this;
    }

    [[nodiscard]] const QImage& image() const { return m_image; }

private:
    QImage m_image;
};

/// What is found on a sheet.
struct Found {
    explicit Found(const Sheet& sheet)
        : marks(sheet.image()),
          shapes(findMarkShapes(marks)),
          lines(findTextLines(shapes, marks.unit())),
          blocks(groupIntoBlocks(lines)) {}

    /// The numbers of letters of each block's lines.
    [[nodiscard]] std::vector<std::vector<size_t>> letters() const {
        std::vector<std::vector<size_t>> all;
        for (const TextBlock& block : blocks) {
            std::vector<size_t>& counts = all.emplace_back();
            for (const TextLine& line : block.lines)
                counts.push_back(line.letters.size());
        }
        return all;
    }

    TextMarks marks;
    MarkShapes shapes;
    std::vector<TextLine> lines;
    std::vector<TextBlock> blocks;
};

using Counts = std::vector<std::vector<size_t>>;

}  // namespace tralio
