#include "platform/linux/speech/speech_voices.h"

#include <algorithm>

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

/// How far a language is from a wanted one; 0 is the same, 3 another language.
int distance(const QString& language, const QString& tag) {
    const QString has = language.toLower().replace(u'_', u'-');
    const QString wants = tag.toLower();
    if (has == wants)
        return 0;
    const QString primary = wants.section(u'-', 0, 0);
    if (has == primary)
        return 1;
    return has.startsWith(primary + u'-') ? 2 : 3;
}

bool isSpeakable(QChar character) {
    return character.unicode() >= u' ' || character == u'\n' || character == u'\t';
}

}  // namespace

QStringList languagesOf(const QByteArray& voices) {
    // An engine lists thousands of voices, grouped by language.
    QStringList languages;
    QByteArrayView latest;
    for (qsizetype start = 0, end = 0; (end = voices.indexOf('\n', start)) >= 0; start = end + 1) {
        const QByteArrayView line = QByteArrayView(voices).sliced(start, end - start);
        const qsizetype tab = line.indexOf('\t');
        if (tab < 0)
            continue;
        const QByteArrayView rest = line.sliced(tab + 1);
        const qsizetype nextTab = rest.indexOf('\t');
        const QByteArrayView language = nextTab < 0 ? rest : rest.first(nextTab);
        if (language != latest)
            languages << QString::fromUtf8(language);
        latest = language;
    }
    languages.removeDuplicates();
    return languages;
}

std::optional<SpeechVoice> chooseVoice(const QStringList& tags, const std::vector<SpeechModule>& modules) {
    constexpr int other = 3;
    for (const QString& tag : tags) {
        std::optional<SpeechVoice> best;
        int bestDistance = other;
        for (const SpeechModule& module : modules) {
            for (const QString& language : module.languages) {
                if (const int d = distance(language, tag); d < bestDistance) {
                    best = SpeechVoice{module.name, language};
                    bestDistance = d;
                }
            }
            if (best)
                return best;
        }
    }
    return std::nullopt;
}

QString withMarks(const QString& text) {
    constexpr int longSentence = 120;  // characters, about eight seconds
    const QString sentenceEnds = u".!?…。！？"_s;
    QString ssml = u"<speak>"_s;
    int marks = 0;
    qsizetype sinceMark = 0;
    bool isDue = true;
    QChar before = u' ';
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (!isSpeakable(text[i]) && !text[i].isSpace())
            continue;
        const QChar character = isSpeakable(text[i]) ? text[i] : QChar(u' ');
        // The daemon adds marks of its own after each sentence. Of two marks without a word between them
        // espeak-ng reports only the last one, so ours are placed before the punctuation that ends the
        // sentence.
        const bool endsSentence =
            sentenceEnds.contains(character) && i + 1 < text.size() && text[i + 1].isSpace();
        const bool endsWord =
            (character.isSpace() || endsSentence) && !before.isSpace() && !sentenceEnds.contains(before);
        if (endsWord && (isDue || sinceMark > longSentence)) {
            ssml += u"<mark name=\"%1\"/>"_s.arg(marks++);
            sinceMark = 0;
            isDue = false;
        }
        if (character == u'\n' || (character.isSpace() && sentenceEnds.contains(before)))
            isDue = true;
        ++sinceMark;
        if (character == u'<')
            ssml += u"&lt;"_s;
        else if (character == u'>')
            ssml += u"&gt;"_s;
        else if (character == u'&')
            ssml += u"&amp;"_s;
        else
            ssml += character;
        before = character;
    }
    return ssml + u"</speak>"_s;
}

bool tellsItsFirstWord(const QString& text) {
    // Text without blanks is reported only at its end, and a voice of another language spells unknown letters
    // one by one.
    constexpr qsizetype longWord = 12;
    constexpr int longNumber = 4;
    const QString trimmed = text.trimmed();
    const auto end = std::find_if(
        trimmed.cbegin(), trimmed.cend(), [](QChar character) { return character.isSpace(); });
    const auto isForeign = [](QChar character) {
        return (character.isLetter() && character.script() != QChar::Script_Latin) || character.isSurrogate();
    };
    return end - trimmed.cbegin() <= longWord && std::none_of(trimmed.cbegin(), end, isForeign) &&
        std::count_if(trimmed.cbegin(), end, [](QChar character) { return character.isDigit(); }) <=
        longNumber;
}

}  // namespace tralio
