#include "ui/translate/dropped_item.h"

#include <QMimeData>

#include "ui/kit/foreign_content.h"

namespace tralio {

bool mayBringItems(const QMimeData& content) {
    const ForeignContent kind = foreignContent(content);
    return kind == ForeignContent::files || kind == ForeignContent::picture;
}

QList<DroppedItem> itemsIn(const QMimeData& content) {
    switch (foreignContent(content)) {
        case ForeignContent::files: {
            QList<DroppedItem> items;
            for (const QUrl& url : content.urls())
                if (url.isLocalFile())
                    items.push_back({.fileURL = url});
            return items;
        }
        case ForeignContent::picture:
            if (content.hasImage())
                return {{.image = qvariant_cast<QImage>(content.imageData())}};
            return {{.image = QImage::fromData(content.data(fileContentFormat()))}};
        case ForeignContent::nothing:
        case ForeignContent::text:
            return {};
    }
    Q_UNREACHABLE();
}

}  // namespace tralio
