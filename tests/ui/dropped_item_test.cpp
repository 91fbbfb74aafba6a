#include "ui/translate/dropped_item.h"

#include <sys/stat.h>

#include "ui/translate/dropped_file.h"
#include "ui/translate_panel_support.h"

namespace tralio {
namespace {

TEST_F(FoundText, a_dropped_picture_or_text_is_read_and_translated_whatever_the_case_of_its_name) {
    using enum DroppedFileKind;
    for (const auto& [kind, names] :
        {std::pair(image, u"a.png a.jpg a.jpeg a.webp a.tiff a.bmp a.heic a.Webp"_s),
            std::pair(text, u"a.txt b.md c.JSON d.csv"_s)})
        for (const QString& name : names.split(u' '))
            EXPECT_EQ(droppedFileKind(QUrl(u"file:///"_s + name)), kind) << qPrintable(name);
    pictureSays(u"seen"_s);
    const QUrl shot = file(u"Shot.PNG"_s, "not looked at by the panel");
    EXPECT_TRUE(panel->handleDrop({{.fileURL = shot}, {.fileURL = QUrl(u"file:///nothing"_s)}}));
    ASSERT_TRUE(settles());
    EXPECT_TRUE(panel->isTranslating());
    ASSERT_THAT(recognizer.images, SizeIs(1));
    EXPECT_EQ(std::get<QUrl>(recognizer.images.front()), shot);

    EXPECT_TRUE(panel->handleDrop({{.picture = picture()}}));
    EXPECT_THAT(recognizer.images, SizeIs(2));
    ASSERT_TRUE(translationEnds());

    EXPECT_TRUE(panel->handleDrop({{.fileURL = file(u"b.Md"_s, "\n# Tiêu đề\n")}}));
    ASSERT_TRUE(outputBecomes(u"# TIÊU ĐỀ"_s));
    EXPECT_EQ(input->text(), u"# Tiêu đề"_s);
}

TEST_F(FoundText, a_picture_dragged_from_a_web_page_comes_as_the_bytes_of_its_file) {
    const QByteArray bytes = "whatever they are";
    const auto contentOfFirst = [](const QMimeData& drag) {
        const QList<DroppedItem> items = itemsIn(drag);
        return items.size() == 1 && items.first().picture ? contentOf(items.first().picture->path()) : "none";
    };
    QMimeData drag;
    drag.setUrls({QUrl(u"https://example.org/picture.png"_s)});
    EXPECT_FALSE(mayBringItems(drag));
    drag.setData(u"application/octet-stream"_s, bytes);
    EXPECT_TRUE(mayBringItems(drag));
    EXPECT_EQ(contentOfFirst(drag), bytes);
    drag.setData(u"image/jpeg"_s, "photo");
    drag.setData(u"image/png"_s, "every pixel");
    EXPECT_EQ(contentOfFirst(drag), "every pixel");

    QMimeData other;
    other.setData(u"image/gif"_s, "one of those that nobody prefers");
    EXPECT_TRUE(mayBringItems(other));
    EXPECT_EQ(contentOfFirst(other), "one of those that nobody prefers");

    drag.setData(u"image/png"_s, {});
    EXPECT_FALSE(panel->handleDrop(itemsIn(drag)));
}

TEST_F(FoundText, what_a_dropped_file_cannot_give_is_passed_over_in_silence) {
    recognizer.answer = []() -> std::vector<TextObservation> { throw OCRError::invalidImage(); };
    const QString pipe = QDir(folder.path()).filePath(u"pipe.txt"_s);
    ASSERT_EQ(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    const QUrl broken = file(u"broken.png"_s, "no picture");
    const auto drop = [this](const QUrl& url) {
        panel->errorMessage = u"earlier"_s;
        EXPECT_TRUE(panel->handleDrop({{.fileURL = url}})) << "a file is taken first and looked at then";
    };
    for (const QUrl& url : {broken, file(u"report.pdf"_s, "%PDF"), file(u"latin.txt"_s, "caf\xe9"),
             file(u"no extension"_s, "text"), QUrl::fromLocalFile(pipe),
             QUrl::fromLocalFile(folder.filePath(u"missing.md"_s)), QUrl::fromLocalFile(folder.path())}) {
        drop(url);
        ASSERT_TRUE(settles());
        EXPECT_EQ(input->text(), u"typed"_s) << url.toString().toStdString();
        EXPECT_EQ(panel->errorMessage(), u"earlier"_s) << url.toString().toStdString();
    }
    drop(file(u"long.txt"_s, QByteArray((8 << 20) + 1, 'x')));
    ASSERT_TRUE(settles());
    EXPECT_EQ(input->text(), u"typed"_s);
    EXPECT_TRUE(panel->errorMessage()->startsWith(u"Văn bản quá dài"_s)) << "but what is too long is told";
    EXPECT_FALSE(panel->handleDrop({}));
    EXPECT_FALSE(panel->handleDrop({DroppedItem{}}));

    recognizer.isSlow = true;
    drop(broken);
    drop(broken);
    ASSERT_TRUE(settles());
    EXPECT_EQ(panel->errorMessage(), u"earlier"_s) << "one that was dropped on another, too";
    drop(broken);
    panel->clear();
    ASSERT_TRUE(settles());
    EXPECT_EQ(panel->errorMessage(), std::nullopt) << "put away meanwhile";
}

}  // namespace
}  // namespace tralio
