// What a drag or the clipboard brings: names of files, addresses, a text and a picture side by side; and what
// a dropped text file has in it.

#include <QMimeData>

#include "fuzz/fuzz.h"
#include "ui/kit/foreign_content.h"
#include "ui/translate/dropped_file.h"
#include "ui/translate/dropped_item.h"

void tralio::fuzz::readInput(const QByteArray& input) {
    using namespace Qt::StringLiterals;
    // One content after the other, each behind the number of its kind.
    const QString kinds[] = {u"text/uri-list"_s, u"text/plain"_s, u"image/png"_s,
        u"application/octet-stream"_s, u"text/html"_s, u"application/x-qt-image"_s};
    QMimeData content;
    for (const QByteArray& part : input.split('\0'))
        if (!part.isEmpty())
            content.setData(
                kinds[static_cast<std::size_t>(part.front() & 7) % std::size(kinds)], part.mid(1));

    const QList<DroppedItem> items = itemsIn(content);
    require(mayBringItems(content) || items.isEmpty(), "what is taken is announced while it hovers");
    for (const DroppedItem& item : items) {
        require(!item.fileURL || item.fileURL->isLocalFile(), "files are of this machine");
        if (item.fileURL)
            (void)droppedFileKind(*item.fileURL);
        if (item.picture)
            require(item.picture->size() <= input.size(), "a picture is its bytes");
    }
    const std::optional<QString> text = contentOfTextFile(fileOf(input));
    require(text.has_value() == input.isValidUtf8(), "a text file is one of UTF-8");
    require(!text || input.endsWith(text->toUtf8()), "a text is all of its file but the byte order mark");
}
