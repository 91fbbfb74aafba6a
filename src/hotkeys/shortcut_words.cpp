#include "hotkeys/shortcut_words.h"

#include <QStringList>

#include <algorithm>
#include <utility>

#include "hotkeys/keys.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

struct ModifierWord {
    QChar symbol;
    QStringView word;
    QStringView macName;  ///< which may follow the symbol in place of a key
};

constexpr ModifierWord modifierWords[] = {
    {u'⌃', u"Ctrl", u"Control"},
    {u'⌥', u"Alt", u"Option"},
    {u'⇧', u"Shift", u"Shift"},
    {u'⌘', u"Super", u"Cmd"},
};

const ModifierWord* modifierWord(QChar symbol) {
    const auto* found = std::ranges::find(modifierWords, symbol, &ModifierWord::symbol);
    return found == std::end(modifierWords) ? nullptr : found;
}

bool isLetter(QChar character) {
    return character.unicode() < 0x80 && character.isLetter();
}

bool isDigit(QChar character) {
    return character.unicode() < 0x80 && character.isDigit();
}

/// The length of the key label at the beginning of `text`: a capital or a digit, a capitalised word, such a
/// word and a number ("Key 71"), or the arrow of the Return key.
qsizetype lengthOfKey(QStringView text) {
    if (text.startsWith(u'↵') || (!text.isEmpty() && isDigit(text.front())))
        return 1;
    if (text.isEmpty() || !isLetter(text.front()) || !text.front().isUpper())
        return 0;
    const auto* const wordEnd = std::ranges::find_if_not(text, isLetter);
    const qsizetype word = wordEnd - text.begin();
    if (word == 1 || !text.sliced(word).startsWith(u' '))
        return word;
    const QStringView number = text.sliced(word + 1);
    const qsizetype digits = std::ranges::find_if_not(number, isDigit) - number.begin();
    return digits == 0 ? word : word + 1 + digits;
}

/// The printed name of a key whose label is only a number ("Key 96" is F5), or the label itself.
QString wordOf(QStringView label) {
    constexpr QStringView numbered = u"Key ";
    const Key* key =
        label.startsWith(numbered) ? keyWith(KeyCode{label.sliced(numbered.size()).toUInt()}) : nullptr;
    if (key == nullptr || key->name == nullptr)
        return label.toString();
    QString word = QString::fromLatin1(key->name).replace(u"KP_"_s, u"Num "_s).replace(u'_', u' ');
    word[0] = word[0].toUpper();
    return word;
}

/// The shortcut at the beginning of `text`, in words, and its length in the text.
std::pair<QString, qsizetype> shortcutAt(QStringView text) {
    QStringList words;
    qsizetype end = 0;
    QStringView macName;
    const auto spaceAt = [&text](qsizetype place) { return text.sliced(place).startsWith(u' ') ? 1 : 0; };
    while (true) {
        const qsizetype next = words.isEmpty() ? 0 : end + spaceAt(end);
        const ModifierWord* modifier = next < text.size() ? modifierWord(text[next]) : nullptr;
        if (modifier == nullptr)
            break;
        words += modifier->word.toString();
        macName = modifier->macName;
        end = next + 1;
    }
    if (words.isEmpty())
        return {QString(), 0};
    const qsizetype keyStart = end + spaceAt(end);
    const qsizetype length = lengthOfKey(text.sliced(keyStart));
    if (length == 0)
        return {words.join(u" + "_s), end};
    const QStringView key = text.sliced(keyStart, length);
    if (key != macName)
        words += key == u"↵" ? u"Enter"_s : wordOf(key);
    return {words.join(u" + "_s), keyStart + length};
}

}  // namespace

QString keysInWords(const QString& text) {
    if (std::ranges::none_of(text, modifierWord))
        return text;
    QString words;
    for (qsizetype place = 0; place < text.size();) {
        const auto [shortcut, length] = shortcutAt(QStringView(text).sliced(place));
        words += length > 0 ? shortcut : QString(text[place]);
        place += std::max<qsizetype>(length, 1);
    }
    return words;
}

QString shortcutsInWords(const QString& text) {
    QStringList all;
    for (qsizetype place = 0; place < text.size();) {
        const auto [shortcut, length] = shortcutAt(QStringView(text).sliced(place));
        if (length > 0 && !all.contains(shortcut))
            all += shortcut;
        place += std::max<qsizetype>(length, 1);
    }
    return all.join(u", "_s);
}

}  // namespace tralio
