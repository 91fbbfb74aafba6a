#pragma once

#include <QRectF>
#include <QString>

#include <span>
#include <vector>

namespace tralio {

/// A word as an engine reads it.
struct ReadWord {
    QString text;
    double confidence = 0;  ///< 0 to 100
    int blanksBefore = 0;
    QString pack{};  ///< the language that it was read in, where that is told
    QRectF box{};
    bool isApart = false;  ///< whether marks show the blank before it, where none is usual
};

struct ReadLine {
    std::vector<ReadWord> words;
    QRectF box;  ///< pixels of the image, from its upper left corner

    [[nodiscard]] QString text() const;

    /// The words' confidence, by their length.
    [[nodiscard]] double confidence() const;
};

/// What an engine makes of an image.
struct Reading {
    std::vector<ReadLine> lines;

    /// The lines' confidence, by their length; 0 without any text.
    [[nodiscard]] double confidence() const;

    /// The confidence of the line that reads worst, of those long enough to judge; 0 without any text.
    [[nodiscard]] double weakestLine() const;

    /// Whether it has most of the letters and digits that another reading of the same lines has. One sign is
    /// easily read with more confidence than a line.
    [[nodiscard]] bool isAsLongAs(const Reading& other) const;

    /// Whether there is more to read than an icon is taken for: two letters or digits.
    [[nodiscard]] bool holdsWord() const;

    /// Whether several lines stand beside one another, and nothing above or below them.
    [[nodiscard]] bool isBrokenRow() const;

    /// Whether there are letters that only Vietnamese writes, and not just by mistake.
    [[nodiscard]] bool looksVietnamese() const;

    /// How many accents, tone marks, horns, hooks and bars its letters bear.
    [[nodiscard]] int markCount() const;

    /// Whether there is a word that reads like one of another script.
    [[nodiscard]] bool holdsRiddle() const;

    /// Whether there are letters that neither Vietnamese nor English writes.
    [[nodiscard]] bool hasForeignLetters() const;

    /// Whether a good part of the letters is of another script than Latin.
    [[nodiscard]] bool holdsOtherScript() const;

    /// Whether Chinese signs stand there without the Japanese syllables that texts of both have.
    [[nodiscard]] bool isHanAlone() const;

    /// Lines next to one another. Those that overlap are in one stretch.
    using Stretch = std::span<ReadLine>;

    /// The lines of a Vietnamese text in which English words stand that may be Vietnamese ones without their
    /// marks.
    [[nodiscard]] std::vector<Stretch> linesThatMayLackMarks();

    /// The lines that are read with less confidence than `enough`, or hold a riddle.
    [[nodiscard]] std::vector<Stretch> linesBelow(double enough);

    /// The part of a picture's height in which only a stretch of these lines stands: to the middles between
    /// it and the lines around it. Endless at the first and the last line.
    struct Heights {
        double top;
        double bottom;
    };
    [[nodiscard]] Heights heightsOf(Stretch stretch) const;

    /// Makes dashes that are no wider than high the middle dots that they are.
    void tellDotsFromDashes();

    /// Drops what is more likely dirt than text: marks at the ends of lines, and very short lines.
    void dropDirt();
};

/// Whether two boxes stand at the same height, mostly.
[[nodiscard]] bool shareHeight(const QRectF& a, const QRectF& b);

}  // namespace tralio
