#include "programs/snip/picture_file.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "ocr/text_recognizer.h"
#include "support/testing.h"

namespace tralio {
namespace {

TEST(PictureFile, keeps_the_pixels_tells_the_ratio_and_is_for_its_owner_alone) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"a.png"_s);
    QImage picture(3, 2, QImage::Format_RGB32);
    picture.fill(QColor(1, 2, 3));
    picture.setPixelColor(2, 1, QColor(250, 100, 50));
    ASSERT_EQ(PictureFile::write(picture, 1.5, path), QString());

    const QImage read(path);
    EXPECT_EQ(read.convertToFormat(QImage::Format_RGB32), picture);
    EXPECT_EQ(read.text(devicePixelRatioKey.toString()), u"1.5");  // as the recogniser reads it
    EXPECT_EQ(read.dotsPerMeterX(), 5669);                         // 144 dots per inch
    EXPECT_EQ(QFile::permissions(path) & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files), QStringList{u"a.png"_s});
}

}  // namespace
}  // namespace tralio
