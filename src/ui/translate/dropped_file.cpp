#include "ui/translate/dropped_file.h"

#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>
#include <QStringList>

#include <utility>

#include "common/background.h"
#include "common/text_limit.h"

namespace tralio {

using namespace Qt::StringLiterals;

std::optional<QString> contentOfTextFile(const QString& path) {
    QFile file(path);
    // Opening a FIFO would block until another program opens it for writing.
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QByteArray bytes = file.read(longestTextBytes + 1);
    const bool isWhole = bytes.size() <= longestTextBytes;
    // The last character may be incomplete where the text was cut.
    QStringDecoder decoder(
        QStringDecoder::Utf8, isWhole ? QStringDecoder::Flag::Stateless : QStringDecoder::Flag::Default);
    QString text = decoder.decode(bytes);
    if (decoder.hasError() || file.error() != QFileDevice::NoError)
        return std::nullopt;
    return isWhole ? text : beginningOfLongText(text);
}

DroppedFileKind droppedFileKind(const QUrl& fileURL) {
    static const QStringList images{u"png"_s, u"jpg"_s, u"jpeg"_s, u"webp"_s, u"tiff"_s, u"bmp"_s, u"heic"_s};
    static const QStringList texts{u"txt"_s, u"md"_s, u"json"_s, u"csv"_s};
    const QString fileExtension = QFileInfo(fileURL.path()).suffix().toLower();
    if (images.contains(fileExtension))
        return DroppedFileKind::image;
    return texts.contains(fileExtension) ? DroppedFileKind::text : DroppedFileKind::other;
}

QCoro::Task<std::optional<QString>> readTextFile(QString path) {
    auto reading = inBackground([path = std::move(path)] { return contentOfTextFile(path); });
    co_return co_await std::move(reading);
}

}  // namespace tralio
