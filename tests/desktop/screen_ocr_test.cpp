#include <QDir>

#include "desktop/program_run.h"
#include "desktop/virtual_desktop.h"
#include "support/testing.h"

namespace tralio {
namespace {

/// What every page begins with, so that it can be told when it stands.
const QString firstLine = u"Giao diện tốt nhất là giao diện mà bạn không còn để ý."_s;
const QString secondLine = u"The best interface is the one you stop noticing."_s;

/// A page in a browser, and the program.
class ScreenOCR : public testing::Test {
protected:
    explicit ScreenOCR(const QString& content = {}, const QSize& screen = {1280, 1024})
        : desktop(VirtualDesktop::Tray::present, screen) {
        program.standIn().translatesTo(u"đã dịch"_s);
        const QString page = desktop.write(u"a.html"_s,
            u"<meta charset=utf-8><body style='margin:0;background:#fff;font:24px sans-serif'><p style='margin:0'>"_s +
                firstLine + u"<br>"_s + secondLine + u"</p>"_s + content);
        desktop.start(u"chromium"_s,
            {u"--no-sandbox"_s, u"--test-type"_s, u"--disable-gpu"_s, u"--no-first-run"_s,
                u"--disable-background-networking"_s, u"--disable-component-update"_s, u"--disable-sync"_s,
                u"--window-position=0,0"_s, u"--window-size=%1,%2"_s.arg(screen.width()).arg(screen.height()),
                u"--user-data-dir="_s + desktop.home() + u"/chromium"_s, u"--app=file://"_s + page});
        m_window = desktop.bringToFront(u"chromium"_s);
        // The page stands when its text can be marked; the mark goes again.
        EXPECT_TRUE(waitUntil([&] {
            desktop.click(m_window, {100, 15}, 3);
            return desktop.primary().startsWith(firstLine.left(9));
        }));
        desktop.click(m_window, {900, 15}, 1);
    }

    /// Presses the hot key and waits for the region picker to cover the screen.
    [[nodiscard]] bool openPicker() {
        desktop.press(u"super+shift+s"_s);
        return pickerOpens();
    }
    [[nodiscard]] bool pickerOpens() const {
        return waitUntil([this] { return desktop.isVisible(u"tralio-snip"_s); });
    }
    [[nodiscard]] bool pickerRuns() const {
        return !desktop.run(u"pgrep"_s, {u"-P"_s, QString::number(program.processId()), u"tralio-snip"_s})
                    .isEmpty();
    }
    /// Draws a rectangle from one place of the page to another; whether the picker then ends. The button is
    /// released right after the last motion.
    [[nodiscard]] bool draw(const QPoint& from, const QPoint& to) const {
        drag(from, to);
        return waitUntil([this] { return !pickerRuns(); });
    }
    void drag(const QPoint& from, const QPoint& to) const {
        const auto move = [this](const QPoint& place) {
            return QStringList{u"mousemove"_s, u"--window"_s, m_window, QString::number(place.x()),
                QString::number(place.y())};
        };
        desktop.run(u"xdotool"_s, move(from) + QStringList{u"mousedown"_s, u"1"_s});
        desktop.run(u"xdotool"_s, move((from + to) / 2));
        desktop.run(u"xdotool"_s, move(to) + QStringList{u"mouseup"_s, u"1"_s});
    }

    /// What the model is asked after a rectangle was drawn upon the hot key; null when it is not asked.
    [[nodiscard]] QString textOf(const QPoint& from, const QPoint& to, int seconds = 15) {
        const qsizetype before = program.standIn().requests().size();
        EXPECT_TRUE(openPicker());
        EXPECT_TRUE(draw(from, to));
        const bool isAsked = waitUntil([&] { return program.standIn().requests().size() > before; }, seconds);
        return isAsked ? program.standIn().requests().last().userText() : QString();
    }

    VirtualDesktop desktop;
    ProgramRun program{desktop};
    QString m_window;
};

TEST_F(ScreenOCR, the_text_in_a_drawn_rectangle_is_translated) {
    EXPECT_EQ(textOf({1, 1}, {750, 70}), firstLine + u'\n' + secondLine);
    EXPECT_TRUE(waitUntil([&] { return program.shownTranslation() == u"đã dịch"_s; }));
    for (const char* folder : {"/tmp", "/runtime"})
        EXPECT_TRUE(
            QDir(desktop.home() + QLatin1StringView(folder)).entryList({u"tralio_snip_*"_s}).isEmpty());
}

TEST_F(ScreenOCR, the_button_in_the_window_hides_it_captures_and_translates) {
    ASSERT_TRUE(program.openByHotKey());
    ASSERT_TRUE(program.click(u"Chụp & Tralio"_s));
    ASSERT_TRUE(pickerOpens());
    EXPECT_FALSE(program.isPopoverShown());
    ASSERT_TRUE(draw({1, 1}, {750, 70}));
    EXPECT_TRUE(waitUntil([&] { return program.shownTranslation() == u"đã dịch"_s; }, 30));
    EXPECT_TRUE(waitUntil([this] { return program.isPopoverInFront(); }));
}

const QStringList goods{u"Cà phê sữa đá"_s, u"29.000"_s, u"Trà đào cam sả"_s, u"45.000"_s,
    u"Bánh mì thịt nướng"_s, u"35.000"_s, u"Nước ép dứa"_s, u"39.000"_s, u"Phở bò tái"_s, u"65.000"_s,
    u"Gỏi cuốn tôm"_s, u"48.000"_s, u"Chè đậu xanh"_s, u"25.000"_s};
const QStringList messages{u"Chiều nay mấy giờ mình họp vậy?"_s, u"Ba giờ rưỡi, phòng nhỏ tầng hai nhé"_s,
    u"Để mình mang máy chiếu"_s, u"Cảm ơn bạn nhiều!"_s};

QString tableAndChat() {
    QString rows;
    for (qsizetype i = 0; i < goods.size(); i += 2)
        rows += u"<tr><td>%1<td>%2"_s.arg(goods[i], goods[i + 1]);
    QString bubbles;
    for (qsizetype i = 0; i < messages.size(); ++i)
        bubbles += u"<p class=%1>%2</p>"_s.arg(i % 2 ? u"own"_s : u"other"_s, messages[i]);
    return u"<style>table,div{font:15px Noto "
           u"Sans}table{position:absolute;left:20px;top:100px;border-collapse:collapse}"
           "td{border:1px solid #333;padding:6px 12px}div{position:absolute;left:500px;top:100px;width:420px;"
           "display:flex;flex-direction:column}div p{margin:6px 0;padding:7px 13px;border-radius:16px}"
           ".own{align-self:end;background:#0b84ff;color:#fff}.other{align-self:start;background:#f0f1f3}</style><table>"_s +
        rows + u"</table><div>"_s + bubbles + u"</div>"_s;
}

class TableAndChatOnScreen : public ScreenOCR {
protected:
    TableAndChatOnScreen() : ScreenOCR(tableAndChat()) {}
};

TEST_F(TableAndChatOnScreen, every_cell_and_every_bubble_is_read) {
    EXPECT_EQ(textOf({10, 90}, {400, 400}), goods.join(u'\n'));
    EXPECT_EQ(textOf({490, 90}, {940, 340}), messages.join(u'\n'));
}

/// Lines of a page in small type, over 30,000 letters together. Each says which one it is.
QStringList longText() {
    const QStringList sentences{
        u"Sáng nay đoàn thuyền đã rời bến cảng cũ để bắt đầu mùa đánh bắt dài nhất trong năm"_s,
        u"nhiều gia đình đứng chờ trên cầu tàu từ sớm"_s,
        u"the mill on the edge of town has been closed for thirty years"_s,
        u"theo ban quản lý thời tiết tuần tới thuận lợi"_s,
        u"volunteers want to open it again as a museum of bread"_s};
    QStringList lines;
    for (int number = 1; number <= 88; ++number) {
        QStringList parts{u"Dòng %1"_s.arg(number)};
        for (int i = 0; i < 6; ++i)
            parts += sentences[(number * 3 + i * (1 + number % 4)) % sentences.size()];
        lines += parts.join(u", "_s).left(345).trimmed();
    }
    return lines;
}

class LongPageOnScreen : public ScreenOCR {
protected:
    LongPageOnScreen()
        : ScreenOCR(
              u"<p style='position:absolute;top:70px;left:8px;margin:0;white-space:nowrap;"
              "font:13px/15px Noto Sans'>"_s +
                  longText().join(u"<br>"_s),
              {2560, 1440}) {}

    /// The number of lines that the panel counts; 0 while it counts none.
    [[nodiscard]] int countedLines() const {
        const QString counting = u"Đang quét chữ (OCR)... "_s;
        return program.shownName(counting).mid(counting.size()).section(u' ', 0, 0).toInt();
    }
    [[nodiscard]] bool drawPage() { return openPicker() && draw({2, 64}, {2500, 1402}); }
};

TEST_F(LongPageOnScreen, its_lines_are_counted_it_can_be_cancelled_half_way_and_is_whole_at_the_end) {
    const QStringList lines = longText();
    ASSERT_GT(lines.join(QString()).size(), 30'000);
    ASSERT_TRUE(drawPage());
    ASSERT_TRUE(waitUntil([&] { return countedLines() > 0; }, 30));
    ASSERT_TRUE(program.click(u"Hủy"_s));
    EXPECT_TRUE(waitUntil([&] { return !program.shows(u"Đang quét chữ"_s); }, 3));
    EXPECT_TRUE(program.standIn().requests().isEmpty());

    ASSERT_TRUE(drawPage());
    ASSERT_TRUE(waitUntil([&] { return !program.standIn().requests().isEmpty(); }, 90));
    const QStringList read = program.standIn().requests().constFirst().userText().split(u'\n');
    ASSERT_EQ(read.size(), lines.size());
    qsizetype missing = 0;
    qsizetype all = 0;
    for (qsizetype i = 0; i < lines.size(); ++i) {
        QStringList left = read[i].split(u' ');
        for (const QString& word : lines[i].split(u' ')) {
            ++all;
            missing += left.removeOne(word) ? 0 : 1;
        }
    }
    EXPECT_LE(missing * 100, all * 3) << missing << " of " << all << " words are not as they stand there";
}

}  // namespace
}  // namespace tralio
