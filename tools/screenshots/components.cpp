#include <QApplication>
#include <QEnterEvent>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QLayout>
#include <QPainter>
#include <QTimer>

#include <array>

#include "scenes.h"
#include "ui/kit/button.h"
#include "ui/kit/error_strip.h"
#include "ui/kit/label.h"
#include "ui/kit/menu_button.h"
#include "ui/kit/popup_menu.h"
#include "ui/kit/reading_area.h"
#include "ui/kit/spinner.h"
#include "ui/kit/surface.h"
#include "ui/kit/switch.h"
#include "ui/kit/tab_strip.h"
#include "ui/kit/text_field.h"
#include "ui/kit/theme.h"
#include "ui/kit/tooltip.h"

using namespace Qt::StringLiterals;

namespace tralio {
namespace {

constexpr int columns[] = {138, 243, 348, 453, 557};
enum class State { normal, hovered, pressed, focused, disabled, selected, off };
using States = std::array<State, std::size(columns)>;
constexpr States buttonStates{State::normal, State::hovered, State::pressed, State::focused, State::disabled};
constexpr States choiceStates{State::normal, State::hovered, State::pressed, State::focused, State::selected};
constexpr States switchStates{State::normal, State::off, State::pressed, State::focused, State::disabled};

class Page final : public QWidget {
protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(rect(), color(ColorRole::window));
    }
};

void hover(QWidget& widget) {
    QEnterEvent event({}, {}, {});
    QApplication::sendEvent(&widget, &event);
}

void focus(QWidget& widget) {
    // The focus ring shows only after a key press, and the scenes end with clicks.
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Shift, Qt::NoModifier);
    QApplication::sendEvent(&widget, &press);
    QFocusEvent event(QEvent::FocusIn, Qt::TabFocusReason);
    QApplication::sendEvent(&widget, &event);
}

/// Puts a control into a state by the events that a user would cause.
void bringInto(Control& control, State state) {
    switch (state) {
        case State::normal:
            break;
        case State::hovered:
            hover(control);
            break;
        case State::pressed:
            control.setDown(true);
            break;
        case State::focused:
            focus(control);
            break;
        case State::disabled:
            control.setEnabled(false);
            break;
        case State::selected:
            control.setChecked(true);
            break;
        case State::off:
            control.setChecked(false);
            break;
    }
}

template <typename Widget>
Widget* place(Widget* widget, QWidget* page, int left, int middle) {
    widget->setParent(page);
    widget->adjustSize();
    widget->move(left, middle - (widget->height() + 1) / 2);
    return widget;
}

void section(QWidget* page, const QRect& area, const QString& title) {
    auto* surface = new Surface(ColorRole::surface1, ColorRole::border15, radius::section, page);
    surface->setGeometry(area);
    place(new Label(title, text::headline), page, area.left() + 16, area.top() + 26);
}

void heading(QWidget* page, int middle, const QStringList& titles) {
    for (int i = 0; i < titles.size(); ++i)
        place(new Label(titles.at(i), text::smallCaption, ColorRole::secondary), page, columns[i], middle);
}

void rowTitle(QWidget* page, int middle, const QString& title) {
    place(new Label(title, text::smallCaption, ColorRole::secondary), page, 40, middle);
}

template <typename Make>
void stateRow(
    QWidget* page, const QString& title, int middle, Make make, const States& states = buttonStates) {
    rowTitle(page, middle, title);
    for (std::size_t i = 0; i < states.size(); ++i)
        bringInto(*place<Control>(make(), page, columns[i], middle), states[i]);
}

void fieldRow(QWidget* page, int middle) {
    rowTitle(page, middle, u"Ô nhập"_s);
    for (std::size_t i = 0; i < buttonStates.size(); ++i) {
        const State state = buttonStates[i];
        auto* field = place(new TextField(TextField::Face::fixedWidth), page, columns[i], middle);
        field->setText(u"gpt-4o"_s);
        field->resize(70, field->height());
        field->setEnabled(state != State::disabled);
        if (state == State::hovered)
            hover(*field);
        else if (state == State::focused)
            QTimer::singleShot(0, field, qOverload<>(&QWidget::setFocus));
    }
}

/// One strip, whose tabs stand below the headings.
void tabRow(QWidget* page, int middle) {
    rowTitle(page, middle, u"Tab"_s);
    auto* strip =
        new TabStrip(QList<TabItem>(choiceStates.size(), {u"clock.arrow.circlepath"_s, u"Lịch sử"_s}));
    const auto tabs = strip->findChildren<Control*>();
    strip->layout()->setSpacing(columns[1] - columns[0] - tabs.constFirst()->sizeHint().width());
    place(strip, page, columns[0] - strip->layout()->contentsMargins().left(), middle);
    strip->setCurrent(int(tabs.size()) - 1);
    for (std::size_t i = 0; i < choiceStates.size(); ++i)
        bringInto(*tabs.at(int(i)), choiceStates[i]);
}

void controls(QWidget* page) {
    section(page, {24, 24, 640, 493}, u"Trạng thái của nút và ô nhập"_s);
    heading(page, 79, {u"bình thường"_s, u"rê chuột"_s, u"nhấn"_s, u"tiêu điểm"_s, u"tắt"_s});
    stateRow(
        page, u"Nút chính"_s, 110, [] { return new Button(button::mainSmall, {.title = u"Cập nhật"_s}); });
    stateRow(
        page, u"Nút đỏ"_s, 146, [] { return new Button(button::redSmall, {.title = u"Cấp quyền"_s}); });
    stateRow(page, u"Nút viền"_s, 182,
        [] { return new Button(button::bordered, {.icon = u"pencil"_s, .title = u"Đổi"_s}); });
    stateRow(
        page, u"Nút trơn"_s, 215,
        [] {
            auto* copy = new Button(button::word, {.icon = u"doc.on.doc"_s, .title = u"Sao chép"_s});
            copy->setColor(ColorRole::accentText);
            copy->setWeight(Weight::medium);
            return copy;
        });
    stateRow(page, u"Nút biểu tượng"_s, 254, [] { return new Button(button::icon, {.icon = u"power"_s}); });
    stateRow(page, u"Menu"_s, 293, [] {
        auto* menu = new MenuButton;
        menu->setTitle(u"Tiếng Anh"_s);
        return menu;
    });
    fieldRow(page, 332);

    heading(page, 365, {u"bình thường"_s, u"rê chuột"_s, u"nhấn"_s, u"tiêu điểm"_s, u"đang chọn"_s});
    tabRow(page, 396);
    stateRow(
        page, u"Gợi ý"_s, 432,
        [] {
            auto* chip = new Button(button::suggestion, {.title = u"⌘ ⇧ D"_s});
            chip->setCheckable(true);
            return chip;
        },
        choiceStates);
    heading(page, 462, {u"bật"_s, u"tắt"_s, u"nhấn"_s, u"tiêu điểm"_s, u"vô hiệu"_s});
    stateRow(
        page, u"Công tắc"_s, 491,
        [] {
            auto* toggle = new Switch;
            toggle->setChecked(true);
            return toggle;
        },
        switchStates);
}

void feedback(QWidget* page) {
    section(page, {24, 533, 640, 334}, u"Phản hồi"_s);
    const auto word = [&](const QString& icon, const QString& title, ColorRole role, Weight weight, int right,
                          int middle) {
        auto* button = new Button(button::word, {.icon = icon, .title = title});
        button->setColor(role);
        button->setWeight(weight);
        place(button, page, 0, middle);
        button->move(right - button->width() + 6, button->y());
    };
    const auto right = [&](QWidget* widget, int middle) {
        place(widget, page, 0, middle);
        widget->move(648 - widget->width(), widget->y());
    };
    for (const int middle : {593, 629}) {
        auto* block = new Surface(ColorRole::surface2, ColorRole::hairline, radius::control, page);
        block->setGeometry(40, middle - 12, 608, 24);
        place(new Label(u"Bản dịch:"_s, text::caption.with(Weight::semibold), ColorRole::secondary), page, 46,
            middle);
    }
    word(u"speaker.wave.2"_s, u"Đọc"_s, ColorRole::secondary, Weight::regular, 562, 593);
    word(u"doc.on.doc"_s, u"Sao chép"_s, ColorRole::accentText, Weight::medium, 640, 593);
    word(u"speaker.wave.3.fill"_s, u"Dừng"_s, ColorRole::accentText, Weight::regular, 564, 629);
    word(u"checkmark"_s, u"Đã chép!"_s, ColorRole::green, Weight::medium, 640, 629);
    place(new Spinner(12), page, 44, 662);
    place(new Label(
              u"Đang quét chữ (OCR)..."_s, text::smallCaption.with(Weight::medium), ColorRole::accentText),
        page, 60, 662);
    word(u"camera.viewfinder"_s, u"Chụp & Tralio"_s, ColorRole::text, Weight::medium, 498, 662);
    word(u"doc.on.clipboard"_s, u"Dán"_s, ColorRole::text, Weight::regular, 550, 662);
    word(u"arrow.right.doc.on.clipboard"_s, u"Dán & Tralio"_s, ColorRole::accentText, Weight::semibold, 644,
        662);
    const std::pair<int, QString> lines[] = {{695, u"Kiểm tra phiên bản mới nhất từ máy chủ"_s},
        {731, u"Đang kiểm tra bản cập nhật..."_s}, {767, u"Đang tải bản cập nhật v1.1.0..."_s},
        {803, u"Bạn đang dùng phiên bản mới nhất (v1.0.9)."_s}};
    for (const auto& [middle, line] : lines)
        place(new Label(line, text::caption, ColorRole::secondary), page, 40, middle);
    right(new Button(button::bordered, {.title = u"Kiểm tra cập nhật"_s}), 695);
    right(new Spinner(14, ColorRole::secondary), 731);
    right(new Button(button::bordered, {.title = u"Kiểm tra cập nhật"_s}), 803);
    auto* checking = place(new Button(button::bordered, {.title = u"Đang kiểm tra..."_s}), page, 40, 839);
    checking->setBusy(true);
    checking->adjustSize();
    auto* testing = place(new Button(button::bordered, {.title = u"Kiểm tra"_s}), page, 167, 839);
    testing->setBusy(true);
    testing->adjustSize();
    place(new Button(button::icon, {.icon = u"eye"_s}), page, 596, 839);
    place(new Button(button::icon, {.icon = u"eye.slash"_s}), page, 624, 839);
}

void overlays(QWidget* page) {
    section(page, {680, 24, 436, 302}, u"Menu, chú giải, thanh cuộn"_s);
    auto* swap = place(new Button(button::swap, {.icon = u"arrow.left.arrow.right"_s}), page, 932, 212);
    setTooltip(swap, u"Đổi chiều ngôn ngữ"_s);
    hover(*swap);
    auto* reading = new ReadingArea(page);
    reading->setText(
        u"thanh cuộn nằm trên nội dung, luôn thấy được khi nội dung cao hơn vùng của nó, như ở đây"_s);
    reading->setGeometry(885, 262, 200, 56);

    QList<MenuEntry> languages;
    for (const auto& name : {u"Tiếng Anh"_s, u"Tiếng Việt"_s, u"Tự động phát hiện"_s, u"Tiếng Nhật"_s,
             u"Tiếng Trung"_s, u"Tiếng Hàn"_s, u"Tiếng Pháp"_s})
        languages << MenuEntry{.title = name};
    const QList<MenuEntry> tones{{.title = u"Tự nhiên"_s, .checked = true}, {.title = u"Kỹ thuật / IT"_s},
        {.title = u"Trang trọng"_s}, {.title = u"Ngắn gọn"_s}};
    QTimer::singleShot(0, page, [=] {
        PopupMenu::open(page, QRect(696, 67, 173, 1), languages, 3);
        PopupMenu::open(page, QRect(888, 67, 149, 1), tones, 1);
    });
}

}  // namespace

QWidget* componentsPage() {
    auto* page = new Page;
    page->setFixedSize(1140, 888);
    overlays(page);
    controls(page);  // after the menus, which take the focus when they open
    feedback(page);

    auto* error = new ErrorStrip(page);
    error->setMessage(u"Lỗi đường dẫn (404): Endpoint API không tồn tại. Vui lòng kiểm tra lại Base URL."_s);
    error->setGeometry(696, 729, 404, error->heightForWidth(404));
    return page;
}

}  // namespace tralio
