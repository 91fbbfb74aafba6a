#include <QPainter>
#include <QStyleHints>

#include "ui/kit/chip.h"
#include "ui/kit/emblem.h"
#include "ui/kit/icon_tile.h"
#include "ui/kit/multiline_enter_input_view.h"
#include "ui/kit/painting.h"
#include "ui/kit/prompt_editor.h"
#include "ui/kit/text_field.h"
#include "widget_support.h"

namespace tralio {
namespace {

/// The ink of a title: what changes when it gives way to a blank.
QRect titleInk(Control& control) {
    const QString title = control.title();
    const QRect ink = changeOf(control, [&] { control.setTitle(QString(QChar::Nbsp)); });
    control.setTitle(title);
    return ink;
}

/// Nearly the same where the title is centred: other letters of the same width.
QRect centredTitleInk(Control& control) {
    control.setTitle(u"bbb"_s);
    return changeOf(control, [&] { control.setTitle(u"ddd"_s); });
}

TEST(Placement, what_a_button_shows_stands_in_its_middle_in_order_and_a_tab_likewise) {
    for (const bool trails : {false, true}) {
        ButtonStyle style = button::main;
        style.iconTrails = trails;
        Button button(style, {.icon = u"sparkles"_s, .title = u"HHH"_s});
        Button bare(style, {.title = QString(QChar::Nbsp)});
        for (Button* each : {&button, &bare})
            each->resize(200, style.height);
        const QRect all = difference(pictureOf(bare), pictureOf(button));
        EXPECT_NEAR(all.left(), 199 - all.right(), 3);
        const QRect title = centredTitleInk(button);
        EXPECT_GE(trails ? all.right() - title.right() : title.left() - all.left(), 12 + 4) << trails;
    }

    TabStrip strip({{u"globe"_s, u"HHH"_s}, {u"globe"_s, u"HHH"_s}});
    TabStrip bare({{{}, QString(QChar::Nbsp)}, {{}, QString(QChar::Nbsp)}});
    for (TabStrip* each : {&strip, &bare}) {
        each->resize(300, each->sizeHint().height());
        each->show();
    }
    const QRect tab = strip.findChildren<Control*>().at(1)->geometry();
    const QRect ink = difference(pictureOf(bare).copy(tab), pictureOf(strip).copy(tab));
    EXPECT_NEAR(ink.left(), tab.width() - 1 - ink.right(), 3);
    EXPECT_NEAR(ink.center().y(), tab.height() / 2, 2);
    EXPECT_GT(centredTitleInk(*strip.findChildren<Control*>().at(1)).left(), ink.left() + 8);
}

TEST(Placement, a_menu_button_has_its_icon_its_title_and_its_chevron_in_a_row) {
    for (const bool isPicker : {false, true}) {
        for (const QString& icon : {QString(), u"globe"_s}) {
            MenuButton button(text::menu, icon);
            if (isPicker)
                button.becomePicker();
            button.setTitle(u"HHH"_s);
            button.resize(isPicker ? 200 : button.sizeHint().width(), button.sizeHint().height());
            const QRect title = titleInk(button);
            EXPECT_NEAR(title.left(), icon.isEmpty() ? 9 : 8 + 12 + 5, 3) << isPicker;
            EXPECT_NEAR(title.center().y(), button.height() / 2, 1);
            const int end = button.width() - (isPicker ? 6 : 8);
            if (!isPicker)
                EXPECT_GE(end - title.right(), 4 + 8) << "room for the chevron";
            const QImage usual = pictureOf(button);
            button.setTitle(u"H"_s.repeated(60));
            EXPECT_LT(titleInk(button).right(), end - 8) << "a long one is shortened before the chevron";
            button.setTitle(u"HHH"_s);
            button.setEnabled(false);
            const QRect paler = difference(usual, pictureOf(button));
            EXPECT_EQ(paler.united(button.rect().adjusted(1, 1, -1, -1)), paler) << "as a whole";
            button.setEnabled(true);
            EXPECT_EQ(pictureOf(button).pixelColor(3, button.height() / 2),
                color(isPicker ? ColorRole::button : ColorRole::control));
        }
    }
}

TEST(Placement, a_sign_stands_in_the_middle_of_its_ground_and_a_text_beside_its_dot_or_edge) {
    Emblem emblem(84, 36);
    const QImage round = pictureOf(emblem);
    EXPECT_NE(round.pixel(42, 4), round.pixel(0, 0));
    IconTile tile({u"globe"_s, 16}, ColorRole::accentIcon, ColorRole::accentTint);
    IconTile bare({}, ColorRole::accentIcon, ColorRole::accentTint);
    EXPECT_NEAR(difference(pictureOf(bare), pictureOf(tile)).center().x(), 18, 1);
    Chip chip(u"HHH"_s);
    chip.resize(chip.sizeHint());
    const QRect title = titleInk(chip);
    EXPECT_GT(title.left(), chip.width() - title.right() + 6) << "room for the dot";
    TextField field(TextField::Face::proportional);
    field.resize(200, field.height());
    EXPECT_NEAR(changeOf(field, [&] { field.setText(u"HHH"_s); }).left(), 9, 1);
}

TEST(Placement, a_line_begins_ends_or_is_centred_as_told_and_emoji_stand_between_their_neighbours) {
    const auto inkAt = [](Qt::Alignment alignment, const QString& text) {
        Label label(QString(QChar::Nbsp), text::body);
        label.setAlignment(alignment);
        label.resize(200, 20);
        return changeOf(label, [&] { label.setText(text); });
    };
    for (const QString& text : {u"HHH"_s, u"H💡H"_s}) {
        EXPECT_NEAR(inkAt(Qt::AlignLeft, text).left(), 1, 1);
        EXPECT_NEAR(inkAt(Qt::AlignRight, text).right(), 198, 1);
        const QRect centred = inkAt(Qt::AlignHCenter, text);
        EXPECT_NEAR(centred.left(), 199 - centred.right(), 2);
    }
    const QRect before = inkOf(u"HH"_s);
    const QRect with = inkOf(u"HH💡"_s);
    const QRect all = inkOf(u"HH💡HH"_s);
    EXPECT_EQ(before.left(), all.left());
    EXPECT_GE(with.right(), before.right() + 10);
    EXPECT_NEAR(all.right() - with.right(), before.width() + 1, 3) << "what follows begins behind it";
    EXPECT_LT(inkOf(u"H"_s.repeated(100)).right(), 300);
    EXPECT_LT(inkOf(u"H💡"_s.repeated(30)).right(), 300) << "larger than their font tells";
    EXPECT_EQ(inkOf(u"H\a\x1bH"_s), before) << "controls have no box";
    EXPECT_LE(inkOf(u"👍🏽"_s).right(), inkOf(u"👍"_s).right()) << "both are of the font that has colours";
    const int emoji = inkOf(u"💡💡💡"_s).right() - inkOf(u"💡💡"_s).right();
    Label wrapping(u"💡"_s.repeated(60), text::body);
    wrapping.setWraps();
    EXPECT_GE(wrapping.heightForWidth(200), 20 * (60 / (200 / emoji)));
}

TEST(Placement, what_is_read_from_the_right_keeps_its_order_beside_emoji) {
    const QString text = u"مرحبا 💡 بالعالم"_s;
    QImage plain(300, 30, QImage::Format_ARGB32_Premultiplied);
    plain.fill(Qt::white);
    QImage painted = plain;
    QPainter plainPainter(&plain);
    plainPainter.setFont(fontFor(text::body));
    plainPainter.drawText(QPointF(0, baselineOf(text::body, 1)), text);
    plainPainter.end();
    QPainter painter(&painted);
    paintTextLine(painter, {0, 0, 300, qreal(text::body.line)}, text::body, Qt::black, text);
    painter.end();
    EXPECT_EQ(difference(plain, painted), QRect());
}

TEST(Placement, the_caret_blinks_as_the_desktop_has_it_and_the_prompt_shows_the_pointer) {
    QString text = u"HHH"_s;
    PromptEditor prompt({.get = [&] { return text; }, .set = [&](const QString& now) { text = now; }});
    prompt.resize(300, 60);
    showActive(prompt);
    if (QWidget* focus = QApplication::focusWidget())
        focus->clearFocus();
    leave(prompt);  // where the pointer happens to be
    EXPECT_EQ(pictureOf(prompt).pixelColor(290, 50), color(ColorRole::textBackground));
    const QImage bare = pictureOf(prompt);
    enter(prompt);
    EXPECT_NE(pictureOf(prompt), bare);
    leave(prompt);
    EXPECT_EQ(pictureOf(prompt), bare);
    QTest::keyClick(prompt.focusProxy(), Qt::Key_Tab);
    EXPECT_EQ(text, u"HHH"_s) << "Tab leads on to the next field";

    MultilineEnterInputView input({.get = [] { return QString(); }, .set = [](const QString&) {}}, [] {});
    input.resize(300, 60);
    showActive(input);
    input.clearFocus();
    const QImage without = pictureOf(*input.viewport());
    const auto hasCaret = [&] { return pictureOf(*input.viewport()) != without; };
    QStyleHints& hints = *QGuiApplication::styleHints();
    const int usual = hints.cursorFlashTime();
    for (const int cycle : {0, 60}) {
        hints.setCursorFlashTime(cycle);
        input.setFocus();
        ASSERT_TRUE(hasCaret());
        if (cycle > 0) {
            QTRY_VERIFY(!hasCaret());
            QTRY_VERIFY(hasCaret());
        }
        input.clearFocus();
        EXPECT_FALSE(hasCaret());
    }
    hints.setCursorFlashTime(usual);
}

}  // namespace
}  // namespace tralio
