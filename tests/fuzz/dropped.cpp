// What a drag or the clipboard brings: names of files, addresses, a text and a picture side by side.

#include <QMimeData>

#include "fuzz/fuzz.h"
#include "ui/kit/foreign_content.h"
#include "ui/translate/dropped_file.h"
#include "ui/translate/dropped_item.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tralio;
    using namespace Qt::StringLiterals;
    // One content after the other, each behind the number of its kind.
    const QString kinds[] = {u"text/uri-list"_s, u"text/plain"_s, u"image/png"_s,
        u"application/octet-stream"_s, u"text/html"_s, u"application/x-qt-image"_s};
    QMimeData content;
    for (const QByteArray& part : fuzz::bytes(data, size).split('\0'))
        if (!part.isEmpty())
            content.setData(
                kinds[static_cast<std::size_t>(part.front() & 7) % std::size(kinds)], part.mid(1));

    const bool mayBring = mayBringItems(content);
    const QList<DroppedItem> items = itemsIn(content);
    fuzz::require(mayBring || items.isEmpty(), "what is taken is announced while it hovers");
    for (const DroppedItem& item : items) {
        fuzz::require(!item.fileURL || item.fileURL->isLocalFile(), "files are of this machine");
        if (item.fileURL)
            (void)droppedFileKind(*item.fileURL);
        if (item.picture)
            fuzz::require(item.picture->size() <= static_cast<qint64>(size), "a picture is its bytes");
    }
    return 0;
}
