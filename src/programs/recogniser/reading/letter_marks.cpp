#include "programs/recogniser/reading/letter_marks.h"

#include <algorithm>
#include <iterator>

namespace tralio {
namespace {

/// Calls `visit` with the words of the lines and those of another reading that are the same but for marks.
template <typename Visit>
void forSameWords(std::span<ReadLine> lines, const Reading& other, Visit visit) {
    if (other.lines.size() != lines.size())
        return;
    for (size_t i = 0; i < lines.size(); ++i) {
        auto next = other.lines[i].words.begin();
        const auto end = other.lines[i].words.end();
        for (ReadWord& word : lines[i].words) {
            const QString plain = splitMarks(word.text).plain;
            const auto same = std::find_if(next, end,
                [&plain](const ReadWord& candidate) { return splitMarks(candidate.text).plain == plain; });
            if (same == end)
                continue;
            visit(word, *same);
            next = std::next(same);
        }
    }
}

/// Whether the letters that have marks in one text have the same in another.
bool keepsMarks(const QString& text, const QString& read) {
    return std::equal(
        read.begin(), read.end(), text.begin(), text.end(),
        [](QChar before, QChar now) { return splitMarks(before).marks == 0 || before == now; });
}

}  // namespace

Letters splitMarks(const QString& text) {
    Letters letters;
    for (const QChar c : text.normalized(QString::NormalizationForm_D)) {
        const bool isBarred = c == u'đ' || c == u'Đ';
        if (isBarred || c.isMark())
            ++letters.marks;
        if (!c.isMark())
            letters.plain += isBarred ? (c == u'đ' ? u'd' : u'D') : c;
    }
    return letters;
}

bool adoptMarks(std::span<ReadLine> lines, const Reading& marked) {
    bool isRicher = false;
    forSameWords(lines, marked, [&isRicher](ReadWord& word, const ReadWord& other) {
        if (splitMarks(other.text).marks <= splitMarks(word.text).marks)
            return;
        word.text = other.text;
        isRicher = true;
    });
    return isRicher;
}

void adoptDrawnMarks(std::span<ReadLine> lines, const Reading& other, const std::vector<TextLine>& drawn,
    const std::vector<PoorWord>& poor) {
    const auto unread = [&](const ReadWord& word) { return unreadMarks(word, word.box, drawn); };
    forSameWords(lines, other, [&](ReadWord& word, const ReadWord& marked) {
        const bool isBetter = unread(marked) == 0 &&
            (unread(word) != 0 ? splitMarks(marked.text).marks > splitMarks(word.text).marks
                               : marked.confidence > word.confidence);
        const auto own = std::ranges::find(poor, &word, &PoorWord::word);
        if (!isBetter || own == poor.end() || !keepsMarks(marked.text, own->text))
            return;
        word.text = marked.text;
        word.confidence = marked.confidence;
    });
}

void adoptSurerMarks(std::span<ReadLine> lines, const Reading& other, double margin) {
    constexpr double sure = 90;
    forSameWords(lines, other, [margin](ReadWord& word, const ReadWord& surer) {
        if (surer.confidence >= sure && surer.confidence >= word.confidence + margin &&
            splitMarks(surer.text).marks >= splitMarks(word.text).marks)
            word = surer;
    });
}

}  // namespace tralio
