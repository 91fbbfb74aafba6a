#include <QDragEnterEvent>

#include "ui/kit/surface.h"
#include "ui/stage_test.h"

namespace tralio {
namespace {

/// What is dragged over the input of the translate panel.
struct Drag : StageTest {
    Drag() { open(); }

    /// Whether it may be dropped there.
    bool dragOver(const QMimeData& content) {
        QDragEnterEvent enter({}, Qt::CopyAction | Qt::MoveAction, &content, Qt::LeftButton, Qt::NoModifier);
        enter.ignore();
        for (QWidget* widget : {find<MultilineEnterInputView>()->viewport(), box()})
            if (!enter.isAccepted())
                QApplication::sendEvent(widget, &enter);
        settle();
        return enter.isAccepted();
    }
    void leave() {
        QDragLeaveEvent leaving;
        QApplication::sendEvent(box(), &leaving);
        settle();
    }
    bool drop(const QMimeData& content) {
        QDropEvent dropped({5, 5}, Qt::CopyAction, &content, Qt::LeftButton, Qt::NoModifier);
        dropped.ignore();
        QApplication::sendEvent(box(), &dropped);
        settle();
        return dropped.isAccepted();
    }
    [[nodiscard]] QWidget* box() const { return find<MultilineEnterInputView>()->parentWidget(); }
    [[nodiscard]] QString placeholder() const {
        return find<MultilineEnterInputView>()->accessibleDescription();
    }
};

TEST_F(Drag, a_drag_of_a_file_shows_that_it_may_be_dropped_until_it_leaves) {
    const QString usual = placeholder();
    EXPECT_EQ(pictureOf(*box()).pixelColor(3, 60), color(ColorRole::textBackground));
    QMimeData file;
    file.setUrls({QUrl(u"https://example.org/"_s), QUrl::fromLocalFile(u"/tmp/menu.png"_s)});
    EXPECT_TRUE(dragOver(file));
    EXPECT_NE(placeholder(), usual);
    leave();
    EXPECT_EQ(placeholder(), usual);
    pictureSays(u"seen"_s);
    EXPECT_TRUE(dragOver(file));
    EXPECT_TRUE(drop(file));
    EXPECT_EQ(placeholder(), QString()) << "a text stands there";
    wait([this] { return result() == u"SEEN"_s; });
}

TEST_F(Drag, text_wins_over_the_picture_that_comes_with_it_and_no_content_does_harm) {
    QMimeData cells;
    cells.setUrls({QUrl(u"https://example.org/"_s)});
    cells.setText(u"1\t2"_s);
    cells.setImageData(QImage(4, 4, QImage::Format_RGB32));
    QMimeData link;
    link.setUrls({QUrl(u"https://example.org/a b"_s)});
    for (const QMimeData* text : {&cells, &link}) {
        EXPECT_TRUE(dragOver(*text));
        EXPECT_FALSE(placeholder().startsWith(u"Thả"_s)) << "the editor takes it";
        EXPECT_TRUE(drop(*text));
        EXPECT_TRUE(input().contains(text->text()));
    }
    /// A program that offers everything and gives nothing.
    class Silent final : public QMimeData {
        bool hasFormat(const QString&) const override { return true; }
        QStringList formats() const override {
            return {u"text/uri-list"_s, u"text/plain"_s, u"application/x-qt-image"_s};
        }
        QVariant retrieveData(const QString&, QMetaType) const override { return {}; }
    } silent;
    QMimeData emptyList;
    emptyList.setData(u"text/uri-list"_s, "\r\n");
    for (const QMimeData* content : std::initializer_list<const QMimeData*>{&emptyList, &silent}) {
        (void)dragOver(*content);
        leave();
        (void)drop(*content);
    }
    pass(1s);
    EXPECT_FALSE(hasControl(u"Đang dịch bằng AI..."_s));
    EXPECT_FALSE(showsError());
}

}  // namespace
}  // namespace tralio
