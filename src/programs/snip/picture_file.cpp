#include "programs/snip/picture_file.h"

#include <QFileInfo>
#include <QImageWriter>
#include <QSaveFile>

#include <cmath>

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

constexpr double dotsPerMeterAtRatioOne = 96 / 0.0254;
/// On Qt's scale for PNG (0 to 100) this is zlib's fastest level. The file is deleted soon.
constexpr int fastCompression = 12;

}  // namespace

QString PictureFile::obstacleAt(const QString& path) {
    const QFileInfo file(path);
    const QFileInfo folder(file.absolutePath());
    if (!folder.isDir())
        return u"%1 is not a folder"_s.arg(folder.filePath());
    if (!folder.isWritable())
        return u"%1 may not be written to"_s.arg(folder.filePath());
    return file.isDir() ? u"%1 is a folder"_s.arg(path) : QString();
}

QString PictureFile::write(QImage picture, double devicePixelRatio, const QString& path) {
    picture.setText(u"DevicePixelRatio"_s, QString::number(devicePixelRatio));
    const int dotsPerMeter = int(std::lround(dotsPerMeterAtRatioOne * devicePixelRatio));
    picture.setDotsPerMeterX(dotsPerMeter);
    picture.setDotsPerMeterY(dotsPerMeter);

    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return file.errorString();
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    QImageWriter writer(&file, "png");
    writer.setCompression(fastCompression);
    if (!writer.write(picture))
        return writer.errorString();
    return file.commit() ? QString() : file.errorString();
}

}  // namespace tralio
