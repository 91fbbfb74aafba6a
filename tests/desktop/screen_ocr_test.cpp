#include <sys/resource.h>

#include "desktop/fixtures.h"
#include "ocr/ocr_test_support.h"
#include "platform/linux/helpers/helper_text_recognizer.h"
#include "support/pictures.h"

namespace tralio {
namespace {

/// The first line of every page, by which a loaded page is recognised.
const QString firstLine = u"Giao diện tốt nhất là giao diện mà bạn không còn để ý."_s;
const QString secondLine = u"The best interface is the one you stop noticing."_s;

/// A page in a browser, and the program.
struct ScreenOCR : testing::Test {
    explicit ScreenOCR(const QString& content = {}, const QSize& screen = {1280, 1024})
        : desktop(VirtualDesktop::Tray::present, screen) {
        const QString page = desktop.write(u"a.html"_s,
            u"<meta charset=utf-8><body style='margin:0;background:#fff;font:24px sans-serif'><p style='margin:0'>"_s +
                firstLine + u"<br>"_s + secondLine + u"</p>"_s + content);
        desktop.startChromium({u"--window-position=0,0"_s,
            u"--window-size=%1,%2"_s.arg(screen.width()).arg(screen.height()), u"--app=file://"_s + page});
        window = desktop.bringToFront(u"chromium"_s);
        // The page is loaded when its text can be selected; the selection is removed again.
        EXPECT_TRUE(waitUntil([&] {
            desktop.click(window, {100, 15}, 3);
            return desktop.primary().startsWith(firstLine.left(9));
        }));
        desktop.click(window, {900, 15});
    }

    /// Drags a rectangle over the page in the region picker, once that covers the screen. Returns whether the
    /// picker then ends.
    [[nodiscard]] bool draw(const QPoint& from, const QPoint& to) const {
        if (!waitUntil([this] { return desktop.isVisible(u"tralio-snip"_s); }))
            return false;
        EXPECT_FALSE(program.isPopoverShown());
        desktop.drag(from, to, window);
        return waitUntil([this] { return desktop.childOf(program.processId(), u"tralio-snip"_s) == 0; });
    }

    VirtualDesktop desktop;
    ProgramRun program{desktop};
    QString window;
};

TEST_F(ScreenOCR, the_text_in_a_rectangle_drawn_upon_the_hot_key_or_the_button_is_translated) {
    desktop.press(u"super+shift+s"_s);
    ASSERT_TRUE(draw({1, 1}, {750, 70}));
    EXPECT_TRUE(program.isAsked(firstLine + u'\n' + secondLine));
    EXPECT_TRUE(waitUntil([&] { return program.shownTranslation() == u"Xin chào"_s; }));
    EXPECT_TRUE(program.comesToFront());

    program.standIn().translatesTo(u"dịch lại"_s);
    ASSERT_TRUE(program.click(u"Chụp & Tralio"_s));
    ASSERT_TRUE(draw({1, 1}, {750, 35}));
    EXPECT_TRUE(program.isAsked(firstLine));
    EXPECT_TRUE(waitUntil([&] { return program.shownTranslation() == u"dịch lại"_s; }));
    EXPECT_TRUE(program.comesToFront());
    EXPECT_THAT(desktop.capturesLeft(), IsEmpty());
}

/// Numbered lines in small type, more than 30,000 letters together.
QStringList longText() {
    const QString sentence =
        u"sáng nay đoàn thuyền đã rời bến cảng cũ để bắt đầu mùa đánh bắt dài nhất trong năm, "
        "the mill on the edge of town has been closed for thirty years, "
        "volunteers want to open it again as a museum of bread, "_s;
    QStringList lines;
    for (int number = 1; number <= 88; ++number)
        lines += (u"Dòng %1, "_s.arg(number) + sentence.mid(number % 50).repeated(3)).left(345).trimmed();
    return lines;
}

struct LongPageOnScreen : ScreenOCR {
    LongPageOnScreen()
        : ScreenOCR(
              u"<p style='position:absolute;top:56px;left:8px;margin:0;white-space:nowrap;"
              "font:13px/15px Noto Sans'>"_s +
                  longText().join(u"<br>"_s),
              {2560, 1440}) {}

    /// The number of lines that the panel shows; 0 while it shows none.
    [[nodiscard]] int countedLines() const {
        const QString counting = u"Đang quét chữ (OCR)... "_s;
        return program.shownName(counting).mid(counting.size()).section(u' ', 0, 0).toInt();
    }
    [[nodiscard]] bool drawPage() {
        desktop.press(u"super+shift+s"_s);
        return draw({2, 53}, {2500, 1380});  // above the panel
    }
};

TEST_F(LongPageOnScreen, its_lines_are_counted_it_can_be_cancelled_half_way_and_is_whole_at_the_end) {
    const QStringList lines = longText();
    ASSERT_GT(lines.join(QString()).size(), 30'000);
    ASSERT_TRUE(drawPage());
    ASSERT_TRUE(waitUntil([&] { return countedLines() > 0; }, 30));
    EXPECT_THAT(desktop.capturesLeft(), SizeIs(1)) << "where are they?";
    ASSERT_TRUE(program.click(u"Hủy"_s));
    EXPECT_TRUE(program.goes(u"Đang quét chữ"_s, 3));
    EXPECT_TRUE(program.standIn().requests().isEmpty());

    ASSERT_TRUE(drawPage());
    ASSERT_TRUE(waitUntil([&] { return !program.standIn().requests().isEmpty(); }, 90));
    const QString read = program.standIn().requests().constFirst().userText();
    EXPECT_EQ(read.count(u'\n') + 1, lines.size());
    QStringList readWords = read.simplified().split(u' ');
    QStringList words = lines.join(u' ').split(u' ');
    const qsizetype all = words.size();
    words.removeIf([&](const QString& word) { return readWords.removeOne(word); });
    EXPECT_LE(words.size() * 100, all * 3) << "not as they stand there: " << words.join(u' ').toStdString();
}

/// Only the release has a limit to what the recogniser may take: the sanitizer needs more.
TEST(LargestPicture, is_read_with_the_memory_that_the_recogniser_may_take_and_no_more) {
    QImage image(7900, 7900, QImage::Format_RGBA64);
    image.fill(Qt::transparent);
    QPainter(&image).drawImage(0, 0, drawn({u"Hello world"_s}));
    SystemClock clock;
    HelperTextRecognizer recognizer(QStringLiteral(TRALIO_OCR), clock);
    OCRService service(recognizer);
    const auto ending = started(service.recognizeText(encoded(std::exchange(image, {}))));
    EXPECT_TRUE(waitUntil([&] { return ending->times > 0; }, 90));
    EXPECT_EQ(ending->result, u"Hello world"_s) << ending->failure.toStdString();
    rlimit limit{};
    ASSERT_EQ(prlimit(static_cast<pid_t>(recognizer.helperProcessId()), RLIMIT_AS, nullptr, &limit), 0);
    EXPECT_LE(limit.rlim_max, rlim_t(4) << 30);
}

}  // namespace
}  // namespace tralio
