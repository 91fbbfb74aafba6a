#include <QDir>

#include <gmock/gmock.h>

#include "desktop/program_run.h"
#include "desktop/virtual_desktop.h"
#include "support/print_to.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

class ScreenOCR : public testing::Test {
protected:
    ScreenOCR() {
        program.standIn().translatesTo(u"đã dịch"_s);
        const QString page = desktop.write(u"a.html"_s,
            u"<meta charset=utf-8><body style='margin:0;font:24px sans-serif'>"
            u"<p style='margin:0'>Giao diện tốt nhất là giao diện mà bạn không còn để ý.<br>"
            u"The best interface is the one you stop noticing.</p>"_s);
        desktop.start(u"chromium"_s,
            {u"--no-sandbox"_s, u"--test-type"_s, u"--disable-gpu"_s, u"--no-first-run"_s,
                u"--disable-background-networking"_s, u"--disable-component-update"_s, u"--disable-sync"_s,
                u"--user-data-dir="_s + desktop.home() + u"/chromium"_s, u"--app=file://"_s + page});
        m_window = desktop.bringToFront(u"chromium"_s);
        // The page stands when its text can be marked; the mark goes again.
        EXPECT_TRUE(waitUntil([&] {
            desktop.click(m_window, {100, 15}, 3);
            return desktop.run(u"xclip"_s, {u"-o"_s, u"-selection"_s, u"primary"_s}).startsWith(u"Giao diện");
        }));
        desktop.click(m_window, {300, 300}, 1);
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

    VirtualDesktop desktop;
    ProgramRun program{desktop};
    QString m_window;
};

TEST_F(ScreenOCR, the_text_in_a_drawn_rectangle_is_translated) {
    const QString text = u"Giao diện tốt nhất là giao diện mà bạn không còn để ý.\n"_s +
        u"The best interface is the one you stop noticing."_s;
    // A drag of which the picker only sees the end draws a smaller rectangle.
    const auto modelGetsTheText = [&] {
        const qsizetype before = program.standIn().requests().size();
        EXPECT_TRUE(openPicker());
        EXPECT_TRUE(draw({1, 1}, {750, 70}));
        const bool asked = waitUntil([&] { return program.standIn().requests().size() > before; }, 15);
        return asked && program.standIn().requests().last().userText() == text;
    };
    ASSERT_TRUE(modelGetsTheText() || modelGetsTheText() || modelGetsTheText());
    EXPECT_TRUE(waitUntil([&] { return program.shownTranslation() == u"đã dịch"_s; }));
    for (const char* folder : {"/tmp", "/runtime"})
        EXPECT_TRUE(
            QDir(desktop.home() + QLatin1StringView(folder)).entryList({u"tralio_snip_*"_s}).isEmpty());
}

TEST_F(ScreenOCR, a_cancelled_capture_brings_the_popover_back_and_asks_nothing) {
    ASSERT_TRUE(openPicker());
    ASSERT_TRUE(waitUntil([&] {
        desktop.press(u"Escape"_s);
        return !pickerRuns();
    }));
    EXPECT_TRUE(waitUntil([&] { return program.isPopoverShown(); }));
    EXPECT_TRUE(program.standIn().requests().isEmpty());
}

TEST_F(ScreenOCR, a_region_without_text_asks_nothing) {
    ASSERT_TRUE(openPicker());
    ASSERT_TRUE(draw({10, 200}, {300, 280}));
    EXPECT_TRUE(waitUntil([&] { return program.isPopoverShown(); }));
    EXPECT_TRUE(program.standIn().requests().isEmpty());
}

TEST_F(ScreenOCR, a_second_request_during_a_capture_is_turned_away) {
    ASSERT_TRUE(openPicker());
    // While the picker is open no key gets past it, but other programs do.
    const auto capture = [this] {
        desktop.run(u"gdbus"_s,
            {u"call"_s, u"--session"_s, u"--dest"_s, u"org.tralio.Tralio"_s, u"--object-path"_s,
                u"/org/tralio/Tralio"_s, u"--method"_s, u"org.tralio.Tralio.CaptureScreen"_s});
    };
    capture();
    ASSERT_TRUE(draw({1, 1}, {750, 70}));
    ASSERT_TRUE(waitUntil([&] { return program.shownTranslation() == u"đã dịch"_s; }, 30));
    EXPECT_FALSE(pickerRuns()) << "the second request was only put off";
    EXPECT_EQ(program.standIn().requests().size(), 1);
}

TEST_F(ScreenOCR, the_button_in_the_window_hides_it_captures_and_translates) {
    desktop.press(u"super+shift+d"_s);
    ASSERT_TRUE(waitUntil([this] { return program.isPopoverInFront(); }));
    ASSERT_TRUE(program.click(u"Chụp & Tralio"_s));
    ASSERT_TRUE(pickerOpens());
    EXPECT_FALSE(program.isPopoverShown());
    ASSERT_TRUE(draw({1, 1}, {750, 70}));
    EXPECT_TRUE(waitUntil([&] { return program.shownTranslation() == u"đã dịch"_s; }, 30));
    EXPECT_TRUE(waitUntil([this] { return program.isPopoverInFront(); }));
}

}  // namespace
}  // namespace tralio
