#include "desktop/program_run.h"
#include "desktop/virtual_desktop.h"
#include "support/testing.h"

namespace tralio {
namespace {

class TranslatePanelOnScreen : public testing::Test {
protected:
    /// What the model was last asked to translate.
    bool modelGets(const QString& text) {
        return waitUntil([&] {
            const auto& requests = program.standIn().requests();
            return !requests.isEmpty() && requests.last().userText() == text;
        });
    }
    void movePointer(const QPoint& place) const {
        desktop.run(u"xdotool"_s, {u"mousemove"_s, QString::number(place.x()), QString::number(place.y())});
    }

    VirtualDesktop desktop;
    ProgramRun program{desktop};
};

TEST_F(TranslatePanelOnScreen, a_typed_text_is_translated_and_the_result_pasted_into_another_program) {
    program.standIn().translatesTo(u"Chào buổi sáng, thế giới"_s);
    ASSERT_TRUE(program.openByHotKey());
    desktop.type(u"good morning, world"_s);
    desktop.press(u"Return"_s);
    ASSERT_TRUE(modelGets(u"good morning, world"_s));
    ASSERT_TRUE(program.click(u"Sao chép"_s));
    ASSERT_TRUE(program.shows(u"Đã chép!"_s));
    desktop.press(u"Escape"_s);

    desktop.start(u"mousepad"_s);
    ASSERT_FALSE(desktop.bringToFront(u"mousepad"_s).isEmpty());
    desktop.press(u"ctrl+v"_s);
    desktop.press(u"ctrl+a"_s);
    EXPECT_EQ(program.translateSelection(), u"Chào buổi sáng, thế giới"_s);

    ASSERT_TRUE(program.click(u"Lịch sử"_s));
    EXPECT_TRUE(program.click(u"good morning, world"_s)) << "not in the history";
    EXPECT_TRUE(waitUntil([this] { return program.shows(u"19 ký tự"_s); })) << "not taken over by a click";
}

TEST_F(TranslatePanelOnScreen, copied_text_is_pasted_and_translated_by_one_click) {
    ASSERT_TRUE(program.openByHotKey());
    desktop.setClipboard(u"copied elsewhere"_s);
    ASSERT_TRUE(program.click(u"Dán & Tralio"_s));
    EXPECT_TRUE(modelGets(u"copied elsewhere"_s));
}

TEST_F(TranslatePanelOnScreen, the_middle_button_pastes_what_is_selected_unless_it_is_too_long) {
    ASSERT_TRUE(program.openByHotKey());
    const QRect area = program.popoverArea();
    const auto pasteSelection = [&](const QString& name, const QString& text) {
        desktop.start(u"xclip"_s, {u"-quiet"_s, u"-selection"_s, u"primary"_s, desktop.write(name, text)});
        ASSERT_TRUE(waitUntil([&] { return desktop.primary().size() == text.size(); }));
        movePointer({area.center().x(), area.bottom() - 585 + 130});
        desktop.run(u"xdotool"_s, {u"click"_s, u"2"_s});
    };
    pasteSelection(u"long.txt"_s, QString(3'000'000, u'x'));
    EXPECT_TRUE(waitUntil([this] { return program.shows(u"Văn bản quá dài (hơn 200.000"_s); }))
        << "or the toolkit has read it whole";
    pasteSelection(u"short.txt"_s, u"selected elsewhere"_s);
    EXPECT_TRUE(waitUntil([this] { return program.shows(u"18 ký tự"_s); }));
}

TEST_F(TranslatePanelOnScreen, a_file_dragged_across_its_edge_from_a_file_manager_is_translated) {
    const QString folder = desktop.home() + u"/files"_s;
    desktop.write(u"files/note.md"_s, u"\nGood morning from a file\n"_s);
    desktop.start(u"pcmanfm"_s, {u"--no-desktop"_s, folder});
    const QString manager = desktop.bringToFront(u"pcmanfm"_s);
    ASSERT_FALSE(manager.isEmpty());
    desktop.run(u"xdotool"_s, {u"windowmove"_s, u"--sync"_s, manager, u"10"_s, u"40"_s});

    ASSERT_TRUE(program.openByHotKey());
    const QRect area = program.popoverArea();
    const QPoint input(area.center().x(), area.bottom() - 585 + 130);
    const auto edgeOfInput = [&] {
        return desktop.screenshot(desktop.home() + u"/screen.png"_s)
            .pixelColor(area.center().x() - 265 + 15, input.y());
    };
    const QColor edgeAtRest = edgeOfInput();
    EXPECT_TRUE(waitUntil([&] {
        // The first icon of the folder, once the file manager has drawn it.
        const QPoint start(10 + 206, 40 + 99);
        movePointer(start);
        desktop.run(u"xdotool"_s, {u"mousedown"_s, u"1"_s});
        constexpr int steps = 8;
        for (int step = 1; step <= steps; ++step)
            movePointer(start + (input - start) * step / steps);
        const bool hovers = waitUntil(
            [&] {
                movePointer(input + QPoint(2, 2));
                movePointer(input);
                return edgeOfInput() != edgeAtRest;
            },
            3);
        EXPECT_TRUE(program.isPopoverShown()) << "closed by the press that began the drag";
        desktop.run(u"xdotool"_s, {u"mouseup"_s, u"1"_s});
        return hovers;
    }));
    EXPECT_TRUE(modelGets(u"Good morning from a file"_s));
    EXPECT_TRUE(waitUntil([this] { return program.isPopoverInFront(); }));
}

}  // namespace
}  // namespace tralio
