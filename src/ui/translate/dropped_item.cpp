#include "ui/translate/dropped_item.h"

#include <QMimeData>

#include "ui/kit/foreign_content.h"

namespace tralio {

namespace {

Picture pictureOf(const QMimeData& content) {
    const QString format = bestPictureFormat(content.formats());
    const QByteArray bytes = content.data(format.isEmpty() ? fileContentFormat() : format);
    return bytes.isEmpty() ? nullptr : std::make_shared<MemoryFile>(bytes);
}

}  // namespace

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
            return {{.picture = pictureOf(content)}};
        case ForeignContent::nothing:
        case ForeignContent::text:
            return {};
    }
    Q_UNREACHABLE();
}

}  // namespace tralio
