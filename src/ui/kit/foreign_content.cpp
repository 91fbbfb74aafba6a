#include "ui/kit/foreign_content.h"

#include <QMimeData>
#include <QUrl>

#include <algorithm>

#include "common/picture.h"

namespace tralio {

using namespace Qt::StringLiterals;

QString fileContentFormat() {
    return u"application/octet-stream"_s;
}

ForeignContent foreignContent(const QMimeData& content) {
    const QList<QUrl> urls = content.urls();
    if (std::any_of(urls.cbegin(), urls.cend(), [](const QUrl& url) { return url.isLocalFile(); }))
        return ForeignContent::files;
    const bool hasPicture =
        !bestPictureFormat(content.formats()).isEmpty() || content.hasFormat(fileContentFormat());
    // Without a text, the addresses count as the text.
    const QString text = content.text().trimmed();
    const bool isAddress = std::any_of(urls.cbegin(), urls.cend(), [&text](const QUrl& url) {
        return text == url.toString() || text == QString::fromUtf8(url.toEncoded());
    });
    if (!text.isEmpty() && !(hasPicture && isAddress))
        return ForeignContent::text;
    return hasPicture ? ForeignContent::picture : ForeignContent::nothing;
}

}  // namespace tralio
