#include "programs/recogniser/mending/figures.h"

#include <algorithm>
#include <array>

#include "programs/recogniser/pixels/boxes.h"
#include "programs/recogniser/reading/prices.h"

namespace tralio {
namespace {

bool isSeparator(QChar c) {
    return c == u'.' || c == u',';
}

bool isOfEastAsia(const QString& pack) {
    return pack == u"jpn" || pack == u"chi_sim" || pack == u"kor";
}

/// A sign of one piece has no accent.
void tellDigitsFromAccents(
    ReadWord& word, const std::vector<QRect>& letters, const std::vector<QRect>& dots) {
    const bool isOnePiece = word.text.size() == 1 && letters.size() == 1 && dots.empty();
    const bool isFigure = digitsIn(word.text) > 0 &&
        std::ranges::none_of(word.text, [](QChar c) { return c.isLetter() && c != u'ó' && c != u'ọ'; });
    if (!isOnePiece && !isFigure)
        return;
    word.text.replace(u'ó', u'6');
    word.text.replace(u'ọ', u'9');
}

/// A short stroke beneath the last mark, or one that was set aside as that of a menu's key.
const QRect* strokeBeneath(const QRect& last, const std::vector<QRect>& strokes) {
    const auto stroke = std::ranges::find_if(strokes, [&](const QRect& mark) {
        return mark.top() > last.bottom() && mark.top() - last.bottom() <= last.height() / 3 + 1 &&
            mark.width() >= 2 * mark.height() && mark.width() * 10 <= last.height() * 14 &&
            std::min(mark.right(), last.right()) - std::max(mark.left(), last.left()) >= mark.width() / 2 &&
            last.right() - mark.right() <= last.height() / 4;
    });
    return stroke == strokes.end() ? nullptr : &*stroke;
}

/// The sign of the dong is a barred "d" with a stroke beneath it, or is written as that letter.
void tellDongs(ReadWord& word, const QString& before, const TextLine& line) {
    constexpr QStringView looksLikeIt = u"₫đd49";
    const QString figure = word.text.size() > 1 ? word.text.chopped(1) : before;
    if (!looksLikeIt.contains(word.text.back()) || digitsIn(figure) < 2 ||
        !std::ranges::all_of(figure, isOfFigure))
        return;
    const std::vector<QRect> letters = marksIn(word.box, line.letters);
    if (letters.empty())
        return;
    const QRect& last = letters.back();
    const int raised = footOf(line.letters) - last.bottom();
    if (strokeBeneath(last, line.dots) || strokeBeneath(last, line.unread))
        word.text.back() = u'₫';
    else if (word.text.back() == u'đ' || word.text.back() == u'₫')  // A thin stroke is too faint to be found.
        word.text.back() = raised >= 2 && raised * 6 >= last.height() ? u'₫' : u'đ';
}

/// A comma is higher than wide, and ends below the digits' feet; a point does neither.
QChar separatorLike(const QRect& dot, int foot, QChar otherwise) {
    if (dot.bottom() > foot && dot.height() * 10 >= dot.width() * 14)
        return u',';
    return dot.bottom() <= foot && dot.height() * 10 <= dot.width() * 12 ? u'.' : otherwise;
}

/// Writes the separators between digits, and the blank before a currency's sign, as they are drawn.
void mendSeparators(ReadWord& word, const std::vector<QRect>& letters, std::vector<QRect> dots) {
    QString signs = word.text;
    signs.removeIf(isSeparator);
    if (letters.empty() || digitsIn(signs) < 2)
        return;
    const int foot = std::ranges::max_element(letters, {}, &QRect::bottom)->bottom();
    const int middle = letters.front().center().y();
    std::erase_if(dots, [&](const QRect& dot) {
        return dot.top() <= middle || dot.right() < letters.front().left() ||
            (word.text.endsWith(u'₫') && dot.right() >= letters.back().left());
    });
    const bool areDrawnSo = std::ssize(dots) == word.text.size() - signs.size();
    const bool isFigure = std::ssize(letters) == signs.size() &&
        std::ssize(dots) >= word.text.size() - signs.size() &&
        std::ranges::all_of(signs, [](QChar c) { return c.isDigit() || isCurrency(c); });
    if (!isFigure) {
        auto dot = dots.begin();
        for (qsizetype i = 0; areDrawnSo && i < word.text.size(); ++i)
            if (isSeparator(word.text[i])) {
                if (i > 0 && i + 1 < word.text.size() && word.text[i - 1].isDigit() &&
                    word.text[i + 1].isDigit())
                    word.text[i] = separatorLike(*dot, foot, word.text[i]);
                ++dot;
            }
        return;
    }
    constexpr double blank = 0.3;  // of a digit's height
    QString figure;
    auto dot = dots.begin();
    qsizetype read = 0;  // up to where in the word
    for (qsizetype i = 0; i < signs.size(); ++i) {
        const QRect& letter = letters[static_cast<size_t>(i)];
        bool isSeparated = i == 0;
        for (; dot != dots.end() && dot->left() < letter.left(); ++dot) {
            const bool isRead = read < word.text.size() && isSeparator(word.text[read]);
            figure += separatorLike(*dot, foot,
                isRead                     ? word.text[read]
                    : dot->bottom() > foot ? u','
                                           : u'.');
            read += isRead ? 1 : 0;
            isSeparated = true;
        }
        if (!isSeparated && isCurrency(signs[i]) &&
            horizontalGap(letters[static_cast<size_t>(i) - 1], letter) >= blank * letter.height())
            figure += u' ';
        figure += signs[i];
        while (read < word.text.size() && word.text[read] != signs[i])
            ++read;
        ++read;
    }
    const auto end = std::find_if_not(word.text.rbegin(), word.text.rend(), isSeparator);
    word.text = figure + word.text.last(end - word.text.rbegin());
}

/// Writes the blank between a figure and its unit where the gap between them is clearly the widest.
void mendBlankBeforeUnit(ReadWord& word, const TextLine& line) {
    constexpr std::array<QStringView, 8> units{u"AM", u"PM", u"€", u"KB", u"MB", u"GB", u"KiB", u"MiB"};
    constexpr int leastHeight = 8;  // below that a blank is no wider than other gaps
    constexpr double blank = 0.28;  // of a letter's height
    const auto unit = std::ranges::find_if(units, [&](QStringView each) { return word.text.endsWith(each); });
    if (unit == units.end() || line.letterHeight() < leastHeight)
        return;
    const qsizetype figure = word.text.size() - unit->size();
    if (digitsIn(word.text) == 0 || !std::all_of(word.text.begin(), word.text.begin() + figure, [](QChar c) {
            return c == u':' || (c != u' ' && isOfFigure(c));
        }))
        return;
    std::vector<QRect> marks = marksIn(word.box, line.letters);
    std::vector<QRect> separators = marksIn(word.box, line.dots);
    const auto low = std::stable_partition(marks.begin(), marks.end(),
        [&](const QRect& mark) { return mark.height() * 2 >= line.letterHeight(); });
    separators.insert(separators.end(), low, marks.end());
    marks.erase(low, marks.end());
    // Marks may hold several signs that touch.
    int widest = 0;
    int next = 0;
    qsizetype place = 0;
    for (size_t i = 1; i < marks.size(); ++i) {
        const bool isParted = std::ranges::any_of(separators, [&](const QRect& mark) {
            return mark.left() > marks[i - 1].right() && mark.right() < marks[i].left();
        });
        const int gap = isParted ? 0 : horizontalGap(marks[i - 1], marks[i]);
        next = std::max(next, std::min(gap, widest));
        if (gap > widest) {
            widest = gap;
            place = static_cast<qsizetype>(i);
        }
    }
    const qsizetype behind = std::ssize(marks) - place;
    if (place > 0 && behind <= unit->size() && widest >= 2 * next && widest >= blank * line.letterHeight())
        word.text.insert(figure, u' ');
}

}  // namespace

void mendFigures(Reading& reading, const std::vector<TextLine>& lines) {
    for (ReadLine& read : reading.lines) {
        QString before;
        for (ReadWord& word : read.words) {
            QString& text = word.text;
            // The engines of East Asia know the sign of the yen by its place in their old codes.
            const bool isYen = text.size() > 2 && text.front() == u'\\' && isOfEastAsia(word.pack) &&
                std::all_of(text.begin() + 1, text.end(), isOfFigure);
            if (isYen)
                text.front() = u'¥';
            if (text.size() > 1 && text.front() == u'©' && text[1].isLower())
                text.front() = u'O';
            for (const TextLine& line : lines) {
                if (line.isShaded || !shareHeight(read.box, line.box))
                    continue;
                const std::vector<QRect> letters = marksIn(word.box, line.letters);
                const std::vector<QRect> dots = marksIn(word.box, line.dots);
                tellDigitsFromAccents(word, letters, dots);
                tellDongs(word, before, line);
                mendSeparators(word, letters, dots);
                mendBlankBeforeUnit(word, line);
            }
            before = text;
        }
    }
}

}  // namespace tralio
