#include "ui/translate/dropped_item.h"

#include <QMimeData>

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

/// As what Chromium gives a picture of a web page, beside its address: the bytes of a file in any format.
const QString fileContent = u"application/octet-stream"_s;

}  // namespace

bool mayBringItems(const QMimeData& content) {
    return content.hasImage() || content.hasFormat(fileContent) ||
        (content.hasUrls() && content.urls().first().isLocalFile());
}

QList<DroppedItem> itemsIn(const QMimeData& content) {
    QList<DroppedItem> items;
    for (const QUrl& url : content.urls())
        if (url.isLocalFile())
            items.push_back({.fileURL = url});
    if (items.isEmpty() && content.hasImage())
        items.push_back({.image = qvariant_cast<QImage>(content.imageData())});
    else if (items.isEmpty() && content.hasFormat(fileContent))
        items.push_back({.image = QImage::fromData(content.data(fileContent))});
    return items;
}

}  // namespace tralio
