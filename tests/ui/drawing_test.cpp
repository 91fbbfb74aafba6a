#include <QDir>
#include <QPainter>
#include <QScrollBar>

#include "ui/kit/chip.h"
#include "ui/kit/cross_fade.h"
#include "ui/kit/error_strip.h"
#include "ui/kit/icon.h"
#include "ui/kit/multiline_enter_input_view.h"
#include "ui/kit/overlay_scroll_bar.h"
#include "ui/kit/painting.h"
#include "ui/kit/reading_area.h"
#include "ui/kit/reveal.h"
#include "ui/kit/stack.h"
#include "ui/kit/window_frame.h"
#include "widget_support.h"

namespace tralio {
namespace {

const QString tallText = u"ẤẨỄỐỘẶ"_s;

TEST(Drawing, vietnamese_capitals_are_whole_in_every_style_and_inside_the_edge_in_every_control) {
    // What changes when the tall text gives way to a blank.
    const auto inkOfWhole = [](QWidget& widget, const TextStyle& style, const auto& setText) {
        setText(tallText);
        const QRect ink = changeOf(widget, [&] { setText(QString(QChar::Nbsp)); });
        EXPECT_EQ(ink.height(), inkOf(tallText, style).height()) << style.size << " in " << widget.height();
        return ink;
    };
    for (const TextStyle& style :
        {text::onboardingTitle, text::panelTitle, text::headline, text::cardTitle, text::body, text::menu,
            text::blockTitle, text::subtitle, text::caption, text::caption.with(Weight::bold),
            text::smallCaption, text::smallCaption.with(Weight::heavy), text::promptEditor}) {
        for (const bool wraps : {false, true}) {
            Label label(tallText, style);
            label.setMaximumLines(wraps ? 0 : 1);
            label.resize(300, wraps ? label.heightForWidth(300) : label.sizeHint().height());
            (void)inkOfWhole(label, style, [&](const QString& text) { label.setText(text); });
        }
    }
    const auto expectWhole = [&](Control& control, const TextStyle& style) {
        control.resize(300, control.sizeHint().height());
        const QRect ink = inkOfWhole(control, style, [&](const QString& text) { control.setTitle(text); });
        EXPECT_TRUE(control.rect().adjusted(0, 1, 0, -1).contains(ink)) << "height " << control.height();
    };
    for (const ButtonStyle& style : {button::main, button::mainSmall, button::redSmall, button::banner,
             button::borderedTall, button::bordered, button::borderedField, button::word,
             button::footerWarning, button::suggestion}) {
        Button button(style, {.title = tallText});
        expectWhole(button, style.text);
    }
    MenuButton menu;
    expectWhole(menu, text::menu);
    Chip chip(tallText);
    expectWhole(chip, text::smallCaption.with(Weight::medium));
    TabStrip strip({{u"globe"_s, tallText}, {u"globe"_s, tallText}});
    strip.show();
    expectWhole(*strip.findChildren<Control*>().at(1), text::caption);

    QString written;
    MultilineEnterInputView input(
        {.get = [&] { return written; }, .set = [&](const QString& now) { written = now; }}, [] {});
    ReadingArea reading;
    for (auto* area : std::initializer_list<QAbstractScrollArea*>{&input, &reading}) {
        area->resize(490, 115);
        area->show();
        (void)inkOfWhole(*area->viewport(), text::body, [&](const QString& text) {
            written = text;
            input.refresh();
            reading.setText(text);
        });
    }
}

TEST(Drawing, every_icon_renders_in_its_colour_and_an_unknown_one_is_empty) {
    EXPECT_TRUE(iconPixmap({.name = u"no.such.icon"_s}, Qt::red, 1).isNull());  // brings the resource in
    const QStringList names = QDir(u":/tralio/icons"_s).entryList();
    EXPECT_FALSE(names.isEmpty());
    const QColor ink(200, 30, 40);
    for (const QString& name : names) {
        const QImage image = iconPixmap({QFileInfo(name).completeBaseName(), 13}, ink, 2).toImage();
        bool inked = false;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                inked = inked || image.pixelColor(x, y) == ink;
        EXPECT_TRUE(inked) << name.toStdString();
        EXPECT_EQ(image.devicePixelRatio(), 2);
    }
}

TEST(Drawing, an_icon_on_whole_pixels_has_sharp_edges_and_fits_at_every_size) {
    constexpr QRectF bubble(2, 2.75, 20, 15.75);
    const auto firstInk = [](const QImage& image, QPoint at, QPoint inwards) {
        while (image.valid(at) && image.pixelColor(at).alpha() == 0)
            at += inwards;
        return image.valid(at) ? image.pixelColor(at).alpha() : 0;
    };
    for (const int side : {16, 20, 22, 24, 32, 44, 48, 64}) {
        const QImage image = iconOnPixels(u"character.bubble.fill"_s, Qt::blue, side, bubble).toImage();
        ASSERT_EQ(image.size(), QSize(side, side));
        const int row = side * 10 / 24;  // where the edges are straight, and no tail is
        const int column = side * 15 / 24;
        for (const auto& [edge, inwards] : {std::pair(QPoint(0, row), QPoint(1, 0)),
                 std::pair(QPoint(side - 1, row), QPoint(-1, 0)), std::pair(QPoint(column, 0), QPoint(0, 1)),
                 std::pair(QPoint(column, side - 1), QPoint(0, -1))})
            EXPECT_GE(firstInk(image, edge, inwards), 250) << side;
    }
}

TEST(Drawing, labels_break_where_told_shorten_their_last_line_and_grow_where_nothing_limits_them) {
    Label label(u"một\nhai"_s);
    label.setWraps();
    EXPECT_EQ(label.heightForWidth(300), 32);
    label.setMaximumLines(2);
    label.setText(u"một hai ba"_s);
    label.resize(60, 32);
    const QImage whole = pictureOf(label);
    label.setText(u"một hai ba bốn năm sáu bảy tám chín mười"_s);
    EXPECT_EQ(label.heightForWidth(60), 32);
    EXPECT_GE(difference(whole, pictureOf(label)).top(), 16) << "only the last line gives way";

    TextStyle loose = text::onboardingTitle;
    loose.spacing = 0;
    EXPECT_LT(textWidth(text::onboardingTitle, tallText), textWidth(loose, tallText) - 1) << "set closer";

    ErrorStrip strip;
    strip.setMessage(u"Một thông báo lỗi rất dài cần nhiều dòng để hiện ra hết. "_s.repeated(3));
    EXPECT_GT(strip.heightForWidth(250), strip.heightForWidth(502));
}

TEST(Drawing, a_very_long_text_breaks_and_shortens_as_its_start_does) {
    for (const QString& part : {u"Một đoạn văn. "_s, u"w"_s, u"\u1ec7\u0323\u0301"_s, u"iiii\n"_s,
             u"مرحبا بالعالم "_s, u"a\u0301\u0323\u0304\u0306\u0302\u0331 "_s}) {
        Label all(part.repeated(4000));
        Label start(part.repeated(400));
        for (Label* label : {&all, &start}) {
            label->setMaximumLines(3);
            label->resize(300, label->heightForWidth(300));
        }
        EXPECT_EQ(all.height(), 48) << part.toStdString();
        EXPECT_EQ(difference(pictureOf(all), pictureOf(start)), QRect()) << part.toStdString();
    }

    Label line(u"Một\ndòng. "_s.repeated(400'000));
    Label start(u"Một dòng. "_s.repeated(40));
    for (Label* label : {&line, &start})
        label->resize(300, 16);
    EXPECT_EQ(difference(pictureOf(line), pictureOf(start)), QRect());
}

TEST(Drawing, a_change_begins_with_the_picture_of_what_was_there) {
    Theme::setAppearance({});
    const auto beginOfChangeFrom = [&](const QString& former) {
        QWidget window;
        auto* label = new Label(former);
        filled(&window, column({}, {label}));
        window.resize(100, 40);
        window.show();
        CrossFade fade(&window, 10'000);
        label->setText(u"sau"_s);
        fade.start();
        return pictureOf(window);
    };
    EXPECT_NE(beginOfChangeFrom(u"trước"_s), beginOfChangeFrom(u"cũ"_s));
}

TEST(Drawing, what_is_revealed_takes_its_height_and_nothing_when_it_left) {
    QWidget window;
    auto* strip = new ErrorStrip;
    strip->setMessage(u"Lỗi"_s);
    auto* reveal = new Reveal(strip);
    auto* rest = new QWidget;
    filled(&window, column({}, {reveal, {rest, {}, 1}}));
    window.resize(502, 200);
    reveal->setRevealed(true);
    window.show();
    EXPECT_EQ(reveal->height(), 32);
    EXPECT_EQ(rest->height(), 168);
    reveal->setRevealed(false);
    EXPECT_EQ(reveal->heightForWidth(502), 32) << "it goes from where it is";
    QTRY_VERIFY(!reveal->isVisible());
    QTRY_COMPARE(rest->height(), 200);
    reveal->setRevealed(true);
    QTRY_COMPARE(reveal->height(), 32);
}

TEST(Drawing, the_scroll_thumb_shows_only_while_there_is_more_and_drags_the_text) {
    ReadingArea area;
    area.resize(300, 115);
    area.setText(u"một dòng"_s);
    area.show();
    auto* bar = area.findChild<OverlayScrollBar*>();
    EXPECT_FALSE(bar->isVisible());
    area.setText(u"một dòng\n"_s.repeated(15));
    ASSERT_TRUE(bar->isVisible());
    const QScrollBar& text = *area.verticalScrollBar();
    const double seen = double(text.pageStep()) / (text.pageStep() + text.maximum());
    EXPECT_NEAR(bar->thumb().height() / (bar->height() - 6), seen, .01);
    const QPoint grip = bar->thumb().center().toPoint();
    QTest::mousePress(bar, Qt::LeftButton, {}, grip);
    QTest::mouseMove(bar, grip + QPoint(0, 200));
    QTest::mouseRelease(bar, Qt::LeftButton, {}, grip + QPoint(0, 200));
    EXPECT_EQ(text.value(), text.maximum());
    QTest::mouseClick(bar, Qt::LeftButton, {}, QPoint(6, 5));
    EXPECT_LT(text.value(), text.maximum());
}

TEST(Drawing, the_window_floats_in_its_shadow_or_is_square_and_what_covers_it_keeps_its_corners) {
    class Cover final : public QWidget {
    protected:
        void paintEvent(QPaintEvent* /*event*/) override {
            QPainter painter(this);
            WindowFrame::paintGround(painter, *this);
        }
    };
    WindowFrame frame(WindowFrame::Edges::floating);
    auto* cover = new Cover;
    const auto picture = [&] {
        QImage image(frame.size(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        frame.render(&image, {}, {}, QWidget::DrawChildren);
        return image;
    };
    const auto expectCoverToLookAlike = [&] {
        const QImage covered = picture();
        cover->hide();
        const QImage bare = picture();
        cover->show();
        const QRect area = frame.contentArea();
        for (const QPoint& point :
            {area.topLeft(), area.bottomRight(), QPoint(area.left(), area.center().y())})
            EXPECT_EQ(covered.pixelColor(point), bare.pixelColor(point));
    };
    frame.setContent(cover);
    const QRect area = frame.contentArea();
    EXPECT_EQ(picture().pixelColor(area.center()).alpha(), 255);
    EXPECT_LT(picture().pixelColor(area.topLeft() + QPoint(1, 1)).alpha(), 255) << "the corner is round";
    const QImage floating = picture();
    const auto shade = [&](int below) {
        return floating.pixelColor(area.center().x(), area.bottom() + below).alpha();
    };
    EXPECT_GT(shade(2), shade(47) + 20);
    for (int below = 3; below < 48; ++below)
        EXPECT_TRUE(shade(below) <= shade(below - 1) && shade(below) >= shade(below - 1) - 6)
            << "a soft edge, at " << below << ": " << shade(below - 1) << ", " << shade(below);
    expectCoverToLookAlike();

    frame.setEdges(WindowFrame::Edges::square);
    EXPECT_EQ(frame.size(), area.size());
    EXPECT_EQ(cover->geometry(), frame.rect());
    EXPECT_EQ(picture().pixelColor(0, 0).alpha(), 255);
    expectCoverToLookAlike();
}

}  // namespace
}  // namespace tralio
