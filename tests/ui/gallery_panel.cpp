#include <QPainter>

#include "gallery_pages.h"
#include "ui/kit/button.h"
#include "ui/kit/chip.h"
#include "ui/kit/error_strip.h"
#include "ui/kit/icon_view.h"
#include "ui/kit/label.h"
#include "ui/kit/menu_button.h"
#include "ui/kit/multiline_enter_input_view.h"
#include "ui/kit/reading_area.h"
#include "ui/kit/reveal.h"
#include "ui/kit/stack.h"
#include "ui/kit/surface.h"
#include "ui/kit/tab_strip.h"
#include "ui/kit/theme.h"
#include "ui/kit/tooltip.h"
#include "ui/kit/window_frame.h"

using namespace Qt::StringLiterals;

namespace tralio {
namespace {

class Backdrop final : public QWidget {
protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(rect(), Theme::current().appearance().dark ? QColor(0x363B45) : QColor(0xD5DBE3));
    }
};

MenuButton* menu(const TextStyle& style, const QString& icon, const QStringList& entries) {
    auto* button = new MenuButton(style, icon);
    QList<MenuEntry> list;
    for (const QString& entry : entries) {
        list << MenuEntry{.title = entry};
    }
    button->setTitle(entries.first());
    button->setEntries(list);
    QObject::connect(button, &MenuButton::chosen, button,
                     [button, list](int i) { button->setTitle(list.at(i).title); });
    return button;
}

Button* word(const QString& icon, const QString& title, Weight weight, ColorRole role) {
    auto* button = new Button(button::word, {.icon = icon, .title = title});
    button->setWeight(weight);
    button->setColor(role);
    return button;
}

QLayout* header() {
    auto* help = new Button(button::icon, {.icon = u"questionmark.circle"_s});
    setTooltip(help, u"Hướng dẫn sử dụng (Mở tài liệu)"_s);
    auto* quit = new Button(button::icon, {.icon = u"power"_s});
    setTooltip(quit, u"Thoát ứng dụng Tralio"_s);
    return row({.padding = {14, 10, 8, 10}},
               {new IconView({.name = u"character.bubble.fill"_s, .pointSize = 16, .bold = true},
                             ColorRole::AccentIcon),
                Gap{6}, new Label(u"Tralio"_s, text::panelTitle), Stretch{},
                new TabStrip({{u"character.book.closed.fill"_s, u"Tralio"_s},
                              {u"clock.arrow.circlepath"_s, u"Lịch sử"_s},
                              {u"gearshape.fill"_s, u"Cài đặt"_s},
                              {u"person.crop.circle.fill"_s, u"Tác giả"_s}}),
                Stretch{}, help, quit});
}

QLayout* footer() {
    auto* capture = new Chip(u"Chụp: ⌘ ⇧ S"_s);
    capture->setState(Chip::State::Trouble);
    return row(
        {.spacing = 6, .padding = {14, 7, 14, 7}},
        {new IconView({.name = u"character.bubble.fill"_s, .pointSize = 10}, ColorRole::AccentIcon),
         new Label(u"Tralio v1.0.9"_s, text::caption.with(Weight::Semibold), ColorRole::Secondary), Stretch{},
         new Button(button::footerWarning,
                    {.icon = u"exclamationmark.triangle.fill"_s, .title = u"Chưa cấp quyền Chụp màn hình"_s}),
         new Chip(u"Bôi đen: ⌘ ⇧ D"_s), capture});
}

}  // namespace

QWidget* panelPage() {
    auto* input = new QString(
        u"The best interface is the one you stop noticing. It answers the question you had, "
        "keeps your place, and then gets quietly out of the way."_s);
    auto* editor = new MultilineEnterInputView(
        {.get = [input] { return *input; }, .set = [input](const QString& text) { *input = text; }}, [] {});
    QObject::connect(editor, &QObject::destroyed, [input] { delete input; });
    editor->setPlaceholder(u"Nhập nội dung cần dịch (Enter để dịch, Shift+Enter xuống dòng)..."_s);
    auto* box = filled(new Surface(ColorRole::TextBackground, ColorRole::Border20, radius::block),
                       column({.padding = {6, 6, 6, 6}}, {editor}));
    box->setFixedHeight(127);

    auto* translate =
        new Button(button::main, {.icon = u"arrow.triangle.2.circlepath"_s, .title = u"Tralio (↵ Enter)"_s});
    translate->stretch();
    auto* cancel = new Button(button::borderedTall, {.title = u"Hủy"_s});
    cancel->hide();
    auto* swap = new Button(button::swap, {.icon = u"arrow.left.arrow.right"_s});
    setTooltip(swap, u"Đổi chiều ngôn ngữ"_s);

    auto* strip = new ErrorStrip;
    strip->setMessage(u"Lỗi giới hạn (429): Tài khoản API bị hết quota hoặc quá số lượng request."_s);
    auto* error = new Reveal(strip);
    QObject::connect(strip, &ErrorStrip::closeRequested, error, [error] { error->setRevealed(false); });
    QObject::connect(swap, &Button::clicked, error, [error] { error->setRevealed(true); });
    QObject::connect(translate, &Button::clicked, cancel, [=] {
        translate->setTitle(u"Đang dịch bằng AI..."_s);
        translate->setBusy(true);
        cancel->show();
    });
    QObject::connect(cancel, &Button::clicked, cancel, [=] {
        translate->setTitle(u"Tralio (↵ Enter)"_s);
        translate->setBusy(false);
        cancel->hide();
    });

    auto* result = new ReadingArea;
    result->setPlaceholder(u"Kết quả dịch sẽ xuất hiện tại đây..."_s);
    result->setText(
        u"Giao diện tốt nhất là giao diện mà bạn không còn để ý đến nữa. Nó giải đáp đúng điều bạn thắc "
        "mắc, giữ nguyên chỗ bạn đang làm dở, rồi lặng lẽ nhường đường."_s);
    auto* resultBlock = filled(
        new Surface(ColorRole::Surface1, ColorRole::Border15, radius::block),
        column({.spacing = 4, .padding = {4, 4, 4, 4}},
               {row({.spacing = 2, .padding = {6, 2, 2, 2}},
                    {new Label(u"Bản dịch:"_s, text::caption.with(Weight::Semibold), ColorRole::Secondary),
                     Stretch{}, word(u"speaker.wave.2"_s, u"Đọc"_s, Weight::Regular, ColorRole::Secondary),
                     word(u"doc.on.doc"_s, u"Sao chép"_s, Weight::Medium, ColorRole::AccentText)}),
                result}));

    result->setScrollFrame(resultBlock);
    editor->setScrollFrame(box);

    auto* panel = column(
        {.spacing = 12, .padding = {14, 10, 14, 10}},
        {row({.spacing = 8}, {menu(text::menu, {}, {u"Tiếng Anh"_s, u"Tiếng Việt"_s, u"Tự động phát hiện"_s}),
                              swap, menu(text::menu, {}, {u"Tiếng Việt"_s, u"Tiếng Nhật"_s}), Stretch{},
                              menu(text::caption, u"sparkles"_s, {u"Tự nhiên"_s, u"Kỹ thuật / IT"_s})}),
         column({.spacing = 4},
                {box, row({.spacing = 2, .padding = {4, 0, 0, 0}},
                          {new Label(u"137 ký tự"_s, text::smallCaption, ColorRole::Secondary), Stretch{},
                           word({}, u"Xóa"_s, Weight::Regular, ColorRole::Secondary),
                           word(u"camera.viewfinder"_s, u"Chụp & Tralio"_s, Weight::Medium, ColorRole::Text),
                           word(u"doc.on.clipboard"_s, u"Dán"_s, Weight::Regular, ColorRole::Text),
                           word(u"arrow.right.doc.on.clipboard"_s, u"Dán & Tralio"_s, Weight::Semibold,
                                ColorRole::AccentText)})}),
         row({.spacing = 8}, {translate, cancel}), error, StackItem(resultBlock, {}, 1)});

    auto* frame = new WindowFrame(WindowFrame::Edges::Floating);
    frame->setContent(
        filled(new QWidget, column({}, {header(), new Divider, StackItem(panel, 1), new Divider, footer()})));
    auto* page = filled(new Backdrop, column({}, {frame}));
    editor->setFocus();
    return page;
}

}  // namespace tralio
