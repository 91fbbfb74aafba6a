#include "engine/error_page.h"

#include <QHash>
#include <QRegularExpression>

#include <algorithm>
#include <optional>
#include <utility>

#include "common/excerpt.h"

namespace tralio::error_page {
namespace {

using namespace Qt::StringLiterals;

struct Span {
    qsizetype begin;         ///< of the whole element
    qsizetype contentBegin;  ///< of the content between its tags
    qsizetype contentEnd;
    qsizetype end;
};

/// The position of `tag` as a whole name, not as the beginning of a longer one; -1 if there is none.
qsizetype findTag(QStringView page, QStringView tag, qsizetype from) {
    for (;;) {
        const qsizetype at = page.indexOf(tag, from, Qt::CaseInsensitive);
        const qsizetype behind = at + tag.size();
        if (at < 0 || behind == page.size() || !page.at(behind).isLetterOrNumber())
            return at;
        from = behind;
    }
}

/// The next element of that name, from `from` on. If an element has no end tag, no later one has: searching
/// stops there, which keeps the time linear.
std::optional<Span> findElement(QStringView page, const QString& name, qsizetype from) {
    const qsizetype begin = findTag(page, u'<' + name, from);
    const qsizetype content = begin < 0 ? -1 : page.indexOf(u'>', begin);
    const qsizetype contentEnd = content < 0 ? -1 : findTag(page, u"</"_s + name, content);
    const qsizetype end = contentEnd < 0 ? -1 : page.indexOf(u'>', contentEnd);
    return end < 0 ? std::nullopt : std::optional(Span{begin, content + 1, contentEnd, end + 1});
}

std::optional<Span> findComment(QStringView page, qsizetype from) {
    const qsizetype begin = page.indexOf(u"<!--"_s, from);
    const qsizetype end = begin < 0 ? -1 : page.indexOf(u"-->"_s, begin);
    return end < 0 ? std::nullopt : std::optional(Span{begin, begin, end, end + 3});
}

template <typename Find>
QString without(const QString& page, const Find& find) {
    QString rest;
    qsizetype at = 0;
    while (const std::optional<Span> span = find(page, at)) {
        rest += QStringView(page).mid(at, span->begin - at);
        at = span->end;
    }
    return rest.append(QStringView(page).mid(at));
}

/// The character that an HTML reference stands for, given by its number or by a name that is common in pages;
/// empty for any other.
QString characterOf(QStringView reference) {
    static const QHash<QString, QString> named{{u"nbsp"_s, u" "_s}, {u"lt"_s, u"<"_s}, {u"gt"_s, u">"_s},
        {u"quot"_s, u"\""_s}, {u"apos"_s, u"'"_s}, {u"amp"_s, u"&"_s}, {u"ndash"_s, u"–"_s},
        {u"mdash"_s, u"—"_s}, {u"hellip"_s, u"…"_s}, {u"lsquo"_s, u"‘"_s}, {u"rsquo"_s, u"’"_s},
        {u"ldquo"_s, u"“"_s}, {u"rdquo"_s, u"”"_s}, {u"laquo"_s, u"«"_s}, {u"raquo"_s, u"»"_s},
        {u"middot"_s, u"·"_s}, {u"bull"_s, u"•"_s}, {u"copy"_s, u"©"_s}, {u"times"_s, u"×"_s}};
    if (!reference.startsWith(u'#'))
        return named.value(reference.toString());
    const QStringView number = reference.mid(1);
    const bool isHex = number.startsWith(u'x', Qt::CaseInsensitive);
    const char32_t character = isHex ? number.mid(1).toUInt(nullptr, 16) : number.toUInt();
    const bool isCharacter =
        character > 0 && character <= QChar::LastValidCodePoint && !QChar::isSurrogate(character);
    return isCharacter ? QString::fromUcs4(&character, 1) : QString();
}

QString withoutReferences(const QString& text) {
    static const QRegularExpression reference(u"&(#\\d{1,7}|#[xX][0-9a-fA-F]{1,6}|[a-z]{2,8});"_s);
    QString plain;
    qsizetype at = 0;
    for (const QRegularExpressionMatch& match : reference.globalMatch(text)) {
        const QString character = characterOf(match.capturedView(1));
        plain += QStringView(text).mid(at, match.capturedStart() - at);
        plain += character.isEmpty() ? match.captured() : character;
        at = match.capturedEnd();
    }
    return plain.append(QStringView(text).mid(at));
}

QString plain(QString markup) {
    constexpr qsizetype enough = 200;
    static const QRegularExpression tag(u"<[^<>]*>"_s);
    const QString text = withoutReferences(markup.replace(tag, u" "_s)).simplified();
    return shortened(text, enough);
}

QString wordsOf(const QString& page) {
    if (const std::optional<Span> title = findElement(page, u"title"_s, 0)) {
        QString titled = plain(page.mid(title->contentBegin, title->contentEnd - title->contentBegin));
        if (!titled.isEmpty())
            return titled;
    }
    QString shown = without(page, findComment);
    for (const QString& unseen : {u"script"_s, u"style"_s, u"head"_s})
        shown = without(
            shown, [&unseen](QStringView page, qsizetype from) { return findElement(page, unseen, from); });
    return plain(shown);
}

/// Whether an HTML document begins here, possibly after a declaration and comments.
bool isPage(QStringView text) {
    for (;;) {
        text = text.trimmed();
        const bool isComment = text.startsWith(u"<!--");
        if (!isComment && !text.startsWith(u"<?"))
            break;
        const QStringView end = isComment ? u"-->" : u"?>";
        const qsizetype at = text.indexOf(end);
        if (at < 0)
            return false;
        text = text.mid(at + end.size());
    }
    static const QRegularExpression begin(
        u"^<(!doctype html|html|head|body)\\b"_s, QRegularExpression::CaseInsensitiveOption);
    return begin.match(text.first(std::min<qsizetype>(text.size(), 20)).toString()).hasMatch();
}

}  // namespace

QString words(const QString& message) {
    constexpr qsizetype head = 100'000;  // the message of a page is near its beginning
    const QString beginning = message.left(head);
    return isPage(beginning) ? wordsOf(beginning) : message;
}

}  // namespace tralio::error_page
