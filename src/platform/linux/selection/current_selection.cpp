#include "platform/linux/selection/current_selection.h"

#include <algorithm>

#include "platform/linux/keyboard/terminals.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

/// Whether a text consists of the dots that a password field reports in place of its contents.
bool isMasked(const QString& text) {
    constexpr QStringView masks = u"•●∗*·";
    return !text.isEmpty() && masks.contains(text.front()) && text.count(text.front()) == text.size();
}

}  // namespace

std::optional<QString> selectedTextOf(const ElementSelection& element, const AskPrimary& primary) {
    if (element.answer != ElementSelection::Answer::some)
        return std::nullopt;
    // This holds for input fields, too: editors in web pages contain paragraphs, each of which shows as such
    // a character.
    const bool hasPlaceholders = element.text.contains(QChar::ObjectReplacementCharacter);
    if (element.reach == ElementSelection::Reach::whole && !hasPlaceholders)
        return element.text;
    auto all = primary();
    if (all)
        // Chromium puts these characters in place of controls
        all->text.remove(QChar::ObjectReplacementCharacter);
    if (all && !all->text.trimmed().isEmpty() && (hasPlaceholders || all->text.contains(element.text))) {
        // PRIMARY may hold an older, longer selection that contains this one, as after a search in a page.
        // Only the application's own Copy can tell.
        if (all->mayBeGone && all->text != element.text)
            return std::nullopt;
        return all->text;
    }
    return QString(element.text).remove(QChar::ObjectReplacementCharacter);
}

std::optional<QString> uncountedSelection(const AskPrimary& primary) {
    auto mark = primary();
    if (!mark || mark->mayBeGone || mark->mayBePassword || isMasked(mark->text))
        return std::nullopt;
    return mark->text.remove(QChar::ObjectReplacementCharacter);
}

std::optional<QString> selectionBeside(const ElementSelection& element, const AskPrimary& primary) {
    using Answer = ElementSelection::Answer;
    if (element.answer == Answer::some ||
        (element.answer == Answer::none && element.reach == ElementSelection::Reach::whole))
        return std::nullopt;
    return uncountedSelection([&]() -> std::optional<PrimaryText> {
        auto mark = primary();
        return mark && (element.answer == Answer::unknown || mark->isFresh) ? std::move(mark) : std::nullopt;
    });
}

bool keepsPasswordsToItself(const QStringList& names, const QString& toolkit) {
    const QStringList known{u"firefox"_s, u"firefox-esr"_s, u"org.mozilla.firefox"_s, u"thunderbird"_s,
        u"org.mozilla.thunderbird"_s};
    const QStringList knownToolkits{u"gtk"_s, u"qt"_s, u"gecko"_s};
    return knownToolkits.contains(toolkit, Qt::CaseInsensitive) || isKnownTerminal(names) ||
        std::any_of(names.begin(), names.end(),
            [&](const QString& name) { return known.contains(name, Qt::CaseInsensitive); });
}

bool mayBePasswordOfGtk4(const QString& marked, const AskPrimary& primary) {
    const auto mark = primary();
    return mark ? !mark->text.startsWith(marked) : looksLikePassword(marked, Marking::unknown);
}

bool looksLikePassword(const QString& text, Marking marking) {
    const QString word = text.trimmed();
    if (word.isEmpty() || std::any_of(word.begin(), word.end(), [](QChar c) { return c.isSpace(); }))
        return false;
    const bool isPlain =
        std::all_of(word.begin(), word.end(), [](QChar c) { return c.isLetter() || c.isMark(); });
    return !(isPlain && marking == Marking::byDoubleClick);
}

}  // namespace tralio
