#include <QDir>
#include <QFile>
#include <QMimeData>
#include <QTemporaryDir>
#include <QThreadPool>

#include <sys/stat.h>

#include "common/text_limit.h"
#include "support/files.h"
#include "ui/translate/dropped_file.h"
#include "ui/translate_panel_support.h"

namespace tralio {
namespace {

const QString invalidImage = OCRError::invalidImage().errorDescription();
const QString noText = OCRError::noTextFound().errorDescription();

/// Text that the panel finds elsewhere than under the user's fingers: on the clipboard, in pictures, in
/// files.
class FoundText : public TranslatePanel {
protected:
    FoundText() { input->text = u"typed"_s; }

    static Picture picture() { return std::make_shared<MemoryFile>("not looked at by the panel"); }
    [[nodiscard]] QUrl file(const QString& name, const QByteArray& content) const {
        return QUrl::fromLocalFile(writeFile(folder.filePath(name), content));
    }
    bool recognitionEnds() {
        return eventually([this] { return !panel->isOCROngoing(); });
    }
    /// Lets everything happen that a drop may lead to on other threads.
    bool settles() { return QThreadPool::globalInstance()->waitForDone() && nextTurn() && recognitionEnds(); }

    QTemporaryDir folder;
};

TEST_F(FoundText, pasting_takes_the_trimmed_text_and_translates_it_if_asked) {
    panel->pasteFromClipboard(AutoTranslate::yes);
    EXPECT_EQ(input->text(), u"typed"_s) << "the clipboard is empty";
    EXPECT_FALSE(panel->isOCROngoing());

    desktop.pasteboard.copy(u" \n pasted\u3000"_s);
    desktop.pasteboard.shown = picture();
    panel->pasteFromClipboard(AutoTranslate::no);
    EXPECT_EQ(input->text(), u"pasted"_s);
    EXPECT_FALSE(panel->isTranslating());
    panel->pasteFromClipboard(AutoTranslate::yes);
    EXPECT_TRUE(panel->isTranslating());
    EXPECT_THAT(recognizer.images, SizeIs(0)) << "text comes before pictures";
}

TEST_F(FoundText, a_text_that_is_too_long_is_refused_with_words_whatever_way_it_comes) {
    const QString longest(longestText, u'a');
    const QString tooLong = longest + u"bc"_s;
    pictureSays(tooLong);
    using enum TranslateState::TextOrigin;
    desktop.pasteboard.copy(tooLong);
    desktop.pasteboard.selected = tooLong;
    const QUrl picture = file(u"a.png"_s, {});
    const QUrl text = file(u"a.txt"_s, tooLong.toUtf8());
    const QUrl endless = file(u"b.txt"_s, QByteArray(longestTextBytes + 10, 'a'));
    const QString told = u"Văn bản quá dài (200.002 ký tự, tối đa 200.000)"_s;
    const QString toldOfMore = u"Văn bản quá dài (hơn 200.000 ký tự, tối đa 200.000)"_s;
    const std::pair<QString, std::function<void()>> ways[] = {
        {told, [&] { panel->pasteFromClipboard(AutoTranslate::yes); }},
        {told, [&] { EXPECT_EQ(panel->textToInsert(clipboard, {}), std::nullopt); }},
        {told, [&] { EXPECT_EQ(panel->textToInsert(selection, {}), std::nullopt); }},
        {told, [&] { EXPECT_EQ(panel->textToInsert(drag, {}, tooLong), std::nullopt); }},
        {told, [&] { appState.requestTranslation(tooLong); }},
        {told, [&] { panel->handleDrop({{.fileURL = picture}}); }},
        {told, [&] { panel->handleDrop({{.fileURL = text}}); }},
        {toldOfMore, [&] { panel->handleDrop({{.fileURL = endless}}); }},
    };
    for (const auto& [message, come] : ways) {
        panel->errorMessage = std::nullopt;
        come();
        ASSERT_TRUE(settles());
        EXPECT_EQ(panel->errorMessage(), message) << &come - &ways[0].second;
        EXPECT_EQ(input->text(), u"typed"_s);
        EXPECT_FALSE(panel->isTranslating());
    }
    // As does what has grown under the user's fingers.
    EXPECT_EQ(panel->textToInsert(drag, u"typed"_s, longest), std::nullopt)
        << "too long with what stays there";
    EXPECT_EQ(panel->textToInsert(drag, {}, longest), longest) << "in the place of it all";
    translate(tooLong);
    EXPECT_EQ(panel->errorMessage(), told);
    EXPECT_FALSE(panel->isTranslating());
    translate(longest);
    EXPECT_EQ(panel->errorMessage(), std::nullopt);
    ASSERT_TRUE(translationEnds());
}

TEST_F(FoundText, pasting_reads_a_picture_where_there_is_no_text) {
    pictureSays(u" in the picture "_s);
    desktop.pasteboard.copy(u" \n"_s);
    desktop.pasteboard.shown = picture();
    for (const AutoTranslate choice : {AutoTranslate::no, AutoTranslate::yes}) {
        panel->errorMessage = u"earlier"_s;
        recognizer.isSlow = true;
        panel->pasteFromClipboard(choice);
        EXPECT_TRUE(panel->isOCROngoing());
        EXPECT_EQ(panel->errorMessage(), std::nullopt);
        ASSERT_TRUE(recognitionEnds());
        EXPECT_EQ(input->text(), u"in the picture"_s);
        EXPECT_EQ(panel->isTranslating(), choice == AutoTranslate::yes);
    }
}

TEST_F(FoundText, what_is_no_picture_is_told_and_leaves_the_texts_alone) {
    panel->outputText = u"result"_s;
    panel->performOCR(Picture(), AutoTranslate::yes);
    ASSERT_TRUE(recognitionEnds());
    EXPECT_EQ(panel->errorMessage(), invalidImage);
    EXPECT_EQ(input->text(), u"typed"_s);
    EXPECT_EQ(panel->outputText(), u"result"_s);
}

TEST_F(FoundText, a_region_of_the_screen_is_translated_a_failure_told_and_a_cancel_changes_nothing) {
    const auto capture = [this] {
        panel->errorMessage = u"earlier"_s;
        panel->captureScreenAndTranslate();
        EXPECT_TRUE(panel->isOCROngoing());
        EXPECT_EQ(panel->errorMessage(), std::nullopt);
        desktop.clock.advance(150ms);
        ASSERT_TRUE(recognitionEnds());
    };
    region.draws = false;
    capture();
    EXPECT_EQ(panel->errorMessage(), std::nullopt);
    region.draws = true;
    capture();
    EXPECT_EQ(panel->errorMessage(), noText);
    EXPECT_EQ(input->text(), u"typed"_s);
    EXPECT_FALSE(panel->isTranslating());

    QStringList steps;
    appState.onHidePopover = [&] { steps << u"hide"_s; };
    appState.onShowPopover = [&] { steps << u"show"_s; };
    pictureSays(u" on the screen\n"_s);
    capture();
    EXPECT_EQ(steps, QStringList({u"hide"_s, u"show"_s}));
    EXPECT_EQ(input->text(), u"on the screen"_s);
    EXPECT_TRUE(panel->isTranslating());
}

TEST_F(FoundText, a_reading_that_is_cancelled_or_overtaken_changes_nothing_and_what_came_last_counts) {
    recognizer.isSlow = true;
    pictureSays(u"late"_s);
    panel->performOCR(picture(), AutoTranslate::yes);
    recognizer.counts.back()(40);
    EXPECT_EQ(panel->linesRead(), 40);
    panel->cancel();
    EXPECT_TRUE(recognizer.stops.back().stop_requested());
    ASSERT_TRUE(recognitionEnds());
    EXPECT_EQ(input->text(), u"typed"_s);
    EXPECT_EQ(panel->errorMessage(), std::nullopt);

    // A failure of the first, once it is stopped, is nothing to tell either.
    recognizer.answer = [answers = 0]() mutable -> std::vector<TextObservation> {
        if (++answers == 1)
            throw LocalizedError(u"stopped"_s);
        return {{.boundingBox = {0.1, 0.5, 0.5, 0.1}, .candidates = {u"new"_s}}};
    };
    panel->performOCR(picture(), AutoTranslate::no);
    const LinesRead countOfFirst = recognizer.counts.back();
    panel->performOCR(picture(), AutoTranslate::no);
    EXPECT_TRUE(recognizer.stops[1].stop_requested()) << "nobody waits for it any more";
    EXPECT_FALSE(recognizer.stops[2].stop_requested());
    EXPECT_EQ(panel->linesRead(), 0);
    countOfFirst(7);
    EXPECT_EQ(panel->linesRead(), 0);
    EXPECT_TRUE(panel->isOCROngoing());
    ASSERT_TRUE(recognitionEnds());
    EXPECT_EQ(input->text(), u"new"_s);
    EXPECT_EQ(panel->errorMessage(), std::nullopt);

    // A region that was drawn overtakes what was dropped.
    panel->performOCR(picture(), AutoTranslate::no);
    panel->captureScreenAndTranslate();
    EXPECT_FALSE(recognizer.stops[3].stop_requested()) << "the user may still cancel";
    int shown = 0;
    appState.onShowPopover = [&] { ++shown; };
    region.draws = false;
    desktop.clock.advance(150ms);
    ASSERT_TRUE(eventually([&] { return shown == 1; }));
    EXPECT_FALSE(recognizer.stops[3].stop_requested()) << "and has";
    region.draws = true;
    panel->captureScreenAndTranslate();
    desktop.clock.advance(150ms);
    ASSERT_TRUE(eventually([this] { return recognizer.stops[3].stop_requested(); }));
    ASSERT_TRUE(recognitionEnds());
}

TEST_F(FoundText, a_text_recognised_after_the_panel_was_left_is_translated_all_the_same) {
    pictureSays(u"seen"_s);
    recognizer.isSlow = true;
    panel->performOCR(picture(), AutoTranslate::yes);
    showPanel();
    ASSERT_TRUE(eventually([&] { return history.items().size() == 1; }));
    EXPECT_EQ(input->text(), u"seen"_s);
}

TEST_F(FoundText, a_dropped_picture_is_read_and_translated_whatever_the_case_of_its_name) {
    pictureSays(u"seen"_s);
    for (const char* name : {"png", "jpg", "jpeg", "webp", "tiff", "bmp", "heic", "Webp"})
        EXPECT_EQ(droppedFileKind(QUrl(u"file:///a."_s + QLatin1StringView(name))), DroppedFileKind::image)
            << name;
    const QUrl shot = file(u"Shot.PNG"_s, "not looked at by the panel");
    EXPECT_TRUE(panel->handleDrop({{.fileURL = shot}, {.fileURL = QUrl(u"file:///nothing"_s)}}));
    ASSERT_TRUE(settles());
    EXPECT_EQ(input->text(), u"seen"_s);
    EXPECT_TRUE(panel->isTranslating());
    ASSERT_THAT(recognizer.images, SizeIs(1));
    EXPECT_EQ(std::get<QUrl>(recognizer.images.front()), shot);

    EXPECT_TRUE(panel->handleDrop({{.picture = picture()}}));
    ASSERT_TRUE(settles());
    EXPECT_THAT(recognizer.images, SizeIs(2));
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

TEST_F(FoundText, a_dropped_text_file_is_translated) {
    for (const QString& name : {u"a.txt"_s, u"b.md"_s, u"c.JSON"_s, u"d.csv"_s}) {
        EXPECT_TRUE(panel->handleDrop({{.fileURL = file(name, "\n# Tiêu đề\n")}}));
        ASSERT_TRUE(eventually([&] { return panel->isTranslating(); })) << name.toStdString();
        EXPECT_EQ(input->text(), u"# Tiêu đề"_s);
        ASSERT_TRUE(translationEnds());
    }
}

TEST_F(FoundText, what_a_dropped_file_cannot_give_is_passed_over_in_silence) {
    recognizer.answer = []() -> std::vector<TextObservation> { throw OCRError::invalidImage(); };
    panel->errorMessage = u"earlier"_s;
    const QString pipe = QDir(folder.path()).filePath(u"pipe.txt"_s);
    ASSERT_EQ(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    const QUrl files[] = {
        file(u"report.pdf"_s, "%PDF"),
        file(u"broken.png"_s, "no picture"),
        file(u"latin.txt"_s, "caf\xe9"),
        file(u"no extension"_s, "text"),
        QUrl::fromLocalFile(pipe),
        QUrl::fromLocalFile(folder.filePath(u"missing.md"_s)),
        QUrl::fromLocalFile(folder.path()),
    };
    for (const QUrl& url : files) {
        EXPECT_TRUE(panel->handleDrop({{.fileURL = url}})) << "a file is taken first and looked at then";
        ASSERT_TRUE(settles());
        EXPECT_EQ(input->text(), u"typed"_s) << url.toString().toStdString();
        EXPECT_EQ(panel->errorMessage(), u"earlier"_s) << url.toString().toStdString();
    }
    EXPECT_TRUE(panel->handleDrop({{.fileURL = file(u"long.txt"_s, QByteArray((8 << 20) + 1, 'x'))}}));
    ASSERT_TRUE(settles());
    EXPECT_EQ(input->text(), u"typed"_s);
    EXPECT_TRUE(panel->errorMessage()->startsWith(u"Văn bản quá dài"_s)) << "but what is too long is told";
    EXPECT_FALSE(panel->handleDrop({}));
    EXPECT_FALSE(panel->handleDrop({DroppedItem{}}));

    recognizer.isSlow = true;
    panel->errorMessage = u"earlier"_s;
    for (int drops = 0; drops < 2; ++drops)
        EXPECT_TRUE(panel->handleDrop({{.fileURL = files[1]}}));
    ASSERT_TRUE(settles());
    EXPECT_EQ(panel->errorMessage(), u"earlier"_s) << "one that was dropped on another, too";
    EXPECT_TRUE(panel->handleDrop({{.fileURL = files[1]}}));
    panel->clear();
    ASSERT_TRUE(settles());
    EXPECT_EQ(panel->errorMessage(), std::nullopt) << "put away meanwhile";
}

}  // namespace
}  // namespace tralio
