#include "ui/kit/foreign_content.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QUrl>

#include <algorithm>

#include "common/picture.h"
#include "hotkeys/pasteboard.h"

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

TextOrigin originOf(const QMimeData& content) {
    const QClipboard* toolkit = QGuiApplication::clipboard();
    if (&content == toolkit->mimeData())
        return TextOrigin::clipboard;
    return &content == toolkit->mimeData(QClipboard::Selection) ? TextOrigin::selection : TextOrigin::drag;
}

std::optional<QString> textOf(const QMimeData& content, TextOrigin origin, Pasteboard& pasteboard) {
    switch (origin) {
        case TextOrigin::clipboard:
            return pasteboard.string();
        case TextOrigin::selection:
            return pasteboard.selectedString();
        case TextOrigin::drag:
            return content.text();
    }
    Q_UNREACHABLE();
}

}  // namespace tralio
