#include "scenes.h"

#include <QApplication>
#include <QDateTime>
#include <QDragEnterEvent>
#include <QEnterEvent>
#include <QMimeData>
#include <QScrollBar>

#include "history/translation_history_json.h"
#include "ui/kit/label.h"
#include "ui/kit/multiline_enter_input_view.h"
#include "ui/kit/scroll_panel.h"
#include "ui/stage.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

const QString input =
    u"The best interface is the one you stop noticing. It answers the question you had, keeps your place, "
    u"and "
    "then gets quietly out of the way."_s;
const QString output =
    u"Giao diện tốt nhất là giao diện mà bạn không còn để ý đến nữa. Nó giải đáp đúng điều bạn thắc mắc, giữ "
    "nguyên chỗ bạn đang làm dở, rồi lặng lẽ nhường đường."_s;

const AppUpdateInfo offer{.version = u"1.1.0"_s,
    .releaseNotes =
        u"Dịch đoạn văn dài nhanh hơn, nhận diện chữ dọc tiếng Nhật chính xác hơn và sửa lỗi phím tắt "
        "ngừng hoạt động sau khi khóa màn hình."_s,
    .downloadUrl = u"https://update.example.com/Tralio-1.1.0.zip"_s,
    .pubDate = {}};

void offerUpdate(Stage& stage) {
    stage.model.replies(StandInReply::withBody(200, offer.toJson()));
    stage.updates.checkForUpdates(false);
    stage.wait([&] { return stage.updates.isUpdateAvailable(); });
}

/// Times long past, which look the same on every day.
TranslationItem item(const QString& time, const QString& from, const QString& to, const QString& tone,
    const QString& source, const QString& translation) {
    return {.id = QUuid::createUuidV5(QUuid(), source),
        .sourceText = source,
        .translatedText = translation,
        .sourceLang = from,
        .targetLang = to,
        .tone = tone,
        .timestamp = timestampOf(std::chrono::system_clock::time_point(
            std::chrono::milliseconds(QDateTime::fromString(time, Qt::ISODate).toMSecsSinceEpoch())))};
}

QByteArray history() {
    return encodeHistory({
        item(u"2025-01-02T09:41:00"_s, u"Tiếng Anh"_s, u"Tiếng Việt"_s, u"Tự nhiên"_s,
            u"Could you send me the signed contract before Friday?"_s,
            u"Bạn có thể gửi cho tôi bản hợp đồng đã ký trước thứ Sáu không?"_s),
        item(u"2025-01-02T09:05:00"_s, u"Tiếng Việt"_s, u"Tiếng Nhật"_s, u"Trang trọng"_s,
            u"Xin lỗi vì đã trả lời muộn, tôi sẽ gửi bản báo cáo trước chiều thứ Sáu."_s,
            u"返信が遅くなり申し訳ございません。金曜日の午後までに報告書をお送りいたします。"_s),
        item(u"2025-01-02T08:22:00"_s, u"Tự động phát hiện"_s, u"Tiếng Việt"_s, u"Kỹ thuật / IT"_s,
            u"The worker holds a lease on the queue entry and renews it every thirty seconds. If the process "
            "dies, the lease expires and another worker picks the entry up; writes that were acknowledged "
            "are "
            "kept, and everything after them is replayed from the journal."_s,
            u"Worker giữ một lease trên mục trong hàng đợi và gia hạn mỗi ba mươi giây. Nếu tiến trình chết, "
            "lease sẽ hết hạn và một worker khác nhận lại mục đó; các thao tác ghi đã được xác nhận vẫn được "
            "giữ, còn mọi thao tác sau đó được phát lại từ nhật ký để trạng thái luôn nhất quán."_s),
        item(u"2024-12-31T23:59:00"_s, u"Tiếng Pháp"_s, u"Tiếng Việt"_s, u"Tự nhiên"_s,
            u"Bonne année à toutes et à tous !"_s, u"Chúc mừng năm mới tất cả mọi người!"_s),
        item(u"2024-12-28T16:20:00"_s, u"Tiếng Hàn"_s, u"Tiếng Anh"_s, u"Ngắn gọn"_s,
            u"내일 회의는 오후 세 시로 변경되었습니다. 자료는 오전 중에 공유해 주세요."_s,
            u"Tomorrow's meeting moved to 3 p.m. Please share the material in the morning."_s),
    });
}

// What the user does beside typing and clicking

void hover(Stage& stage, QWidget* widget) {
    const QPointF middle = widget->rect().center();
    QEnterEvent enter(middle, middle, widget->mapToGlobal(middle));
    QApplication::sendEvent(widget, &enter);
    stage.settle();
}

/// Holds a file over the input.
void dragFileOver(Stage& stage) {
    QMimeData file;
    file.setUrls({QUrl::fromLocalFile(u"/tmp/menu.png"_s)});
    QDragEnterEvent enter({}, Qt::CopyAction, &file, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(stage.find<MultilineEnterInputView>()->parentWidget(), &enter);
    stage.settle();
}

/// Scrolls until the section with this heading stands as far below the top as the first one does.
void scrollTo(Stage& stage, const QString& label) {
    auto* panel = stage.find<ScrollPanel>();
    for (const Label* candidate : panel->findChildren<Label*>())
        if (candidate->text() == label)
            panel->verticalScrollBar()->setValue(candidate->mapTo(panel->widget(), QPoint()).y() - 26);
    stage.settle();
}

void scrollToEnd(Stage& stage) {
    QScrollBar* bar = stage.find<ScrollPanel>()->verticalScrollBar();
    bar->setValue(bar->maximum());
    stage.settle();
}

// The translate panel

void empty(Stage& stage) {
    stage.open();
}

void typed(Stage& stage) {
    stage.open();
    stage.type(input);
}

void translating(Stage& stage) {
    stage.model.replies(StandInReply::translation(output).delivered(StandInReply::Delivery::held));
    typed(stage);
    stage.press(Qt::Key_Return);
    stage.wait([&] { return !stage.model.requests().isEmpty(); });
}

void result(Stage& stage) {
    stage.model.translatesTo(output);
    typed(stage);
    stage.press(Qt::Key_Return);
    stage.wait([&] { return stage.hasControl(u"Sao chép"_s); });
}

void errorAndBanner(Stage& stage) {
    stage.desktop.permissions.screenCapture = false;
    offerUpdate(stage);
    stage.model.replies(StandInReply::error(429, u"Rate limit reached"_s));
    typed(stage);
    stage.press(Qt::Key_Return);
    stage.wait([&] { return stage.model.requests().size() == 2 && stage.hasControl(u"Tralio (↵ Enter)"_s); });
}

void dropHover(Stage& stage) {
    stage.open();
    dragFileOver(stage);
}

void recognizing(Stage& stage) {
    QImage photograph(40, 20, QImage::Format_RGB32);
    photograph.fill(Qt::white);
    stage.desktop.pasteboard.picture = photograph;
    stage.recognizer.isHung = true;
    stage.open();
    stage.click(u"Dán"_s);
}

void downloading(Stage& stage) {
    offerUpdate(stage);
    stage.updates.isUpdating = true;
    stage.updates.downloadProgress = 0.42;
    stage.open();
}

// The other tabs

void historyEmpty(Stage& stage) {
    stage.open();
    stage.click(u"Lịch sử"_s);
}

void historyList(Stage& stage) {
    stage.store.setValue(u"app_translation_history_items"_s, history());
    historyEmpty(stage);
    if (const QList<Control*> copies = stage.controls(u"Sao chép"_s); !copies.isEmpty()) {
        hover(stage, copies.constFirst()->parentWidget());
        stage.click(u"Sao chép"_s);
    }
}

/// After an entry was removed.
void historyUndo(Stage& stage) {
    historyList(stage);
    stage.click(u"Xóa"_s);
}

void settings(Stage& stage) {
    stage.open();
    stage.click(u"Cài đặt"_s);
}

/// With one permission missing, and a provider that wants a key.
void settingsOfOthers(Stage& stage) {
    stage.desktop.permissions.screenCapture = false;
    stage.store.setValue(u"app_setting_preset_id"_s, u"openai"_s);
    stage.store.setValue(u"app_setting_model"_s, u"gpt-4o-mini"_s);
    stage.store.setValue(u"app_setting_api_key"_s, u"sk-0123456789abcdefghijklm"_s);
    settings(stage);
}

/// The footer with all that can be in it, and the settings where its warning leads.
void permissionsMissing(Stage& stage) {
    for (const QString& hotKey : {u"hotkey"_s, u"ocr_hotkey"_s})
        stage.store.setValue(u"app_setting_%1_display"_s.arg(hotKey), u"⌃ ⌥ ⇧ ⌘ Return"_s);
    stage.desktop.permissions.accessibility = false;
    stage.desktop.permissions.screenCapture = false;
    stage.open();
    stage.press(Qt::Key_Shift);  // a ring shows only to who uses the keyboard
    const QList<Control*> warning = stage.controls(u"Chưa cấp quyền: Trợ năng & Chụp"_s);
    warning.constFirst()->setFocus(Qt::TabFocusReason);
    stage.press(Qt::Key_Space);
}

/// As seen by who moves by keyboard alone: on a tab, in a field, on a button.
auto keyboardOn(const QString& name) {
    return [name](Stage& stage) {
        settingsOfOthers(stage);
        scrollTo(stage, u"Mô hình AI & Nhà cung cấp"_s);
        stage.press(Qt::Key_Shift);  // a ring shows only to who uses the keyboard
        for (QWidget* part : visibleParts<QWidget>(stage.window()))
            if (part->accessibleName() == name && part->focusPolicy() != Qt::NoFocus)
                part->setFocus(Qt::TabFocusReason);
        stage.settle();
    };
}

void settingsRestored(Stage& stage) {
    settingsOfOthers(stage);
    stage.click(u"Khôi phục mặc định"_s);
}

void checkingForUpdates(Stage& stage) {
    stage.model.replies(StandInReply::withBody(200, offer.toJson()).delivered(StandInReply::Delivery::held));
    settingsOfOthers(stage);
    scrollToEnd(stage);
    stage.click(u"Kiểm tra cập nhật"_s);
}

void recording(Stage& stage) {
    settingsOfOthers(stage);
    stage.click(u"Đổi"_s);
}

const QString providerSection = u"Mô hình AI & Nhà cung cấp"_s;

void testConnection(Stage& stage, const QString& button) {
    scrollTo(stage, providerSection);
    stage.click(button);
    stage.wait([&] { return stage.hasControl(button) && !stage.controls(button).constFirst()->isBusy(); });
}

void providerFields(Stage& stage) {
    stage.model.replies(StandInReply::error(401, u"Incorrect API key provided"_s));
    settingsOfOthers(stage);
    testConnection(stage, u"Kiểm tra"_s);
}

void providerCard(Stage& stage) {
    stage.model.translatesTo(u"Xin chào"_s);
    settings(stage);
    testConnection(stage, u"Kiểm tra kết nối"_s);
}

void settingsEnd(Stage& stage) {
    offerUpdate(stage);
    settingsOfOthers(stage);
    scrollToEnd(stage);
}

void about(Stage& stage) {
    stage.open();
    stage.click(u"Tác giả"_s);
}

/// The walk-through, so many pages on.
auto onboarding(int page) {
    return [page](Stage& stage) {
        stage.store.setValue(u"hasCompletedOnboarding"_s, false);
        stage.desktop.permissions.screenCapture = false;
        stage.open();
        for (int i = 0; i < page; ++i)
            stage.click(u"Tiếp tục"_s);
    };
}

}  // namespace

const QList<Scene>& scenes() {
    static const QList<Scene> all{
        {u"translate-empty"_s, empty},
        {u"translate-typed"_s, typed},
        {u"translate-translating"_s, translating},
        {u"translate-result"_s, result},
        {u"translate-error-banner"_s, errorAndBanner},
        {u"translate-drop-hover"_s, dropHover},
        {u"translate-recognizing"_s, recognizing},
        {u"translate-downloading"_s, downloading},
        {u"history-empty"_s, historyEmpty},
        {u"history-list"_s, historyList},
        {u"history-undo"_s, historyUndo},
        {u"settings-top"_s, settings},
        {u"settings-shortcuts-recording"_s, recording},
        {u"settings-provider-fields"_s, providerFields},
        {u"settings-provider-card"_s, providerCard},
        {u"settings-bottom"_s, settingsEnd},
        {u"settings-permissions-missing"_s, permissionsMissing},
        {u"settings-focused-field"_s, keyboardOn(u"Tên Model"_s)},
        {u"settings-focused-button"_s, keyboardOn(u"Kiểm tra"_s)},
        {u"settings-focused-tab"_s, keyboardOn(u"Cài đặt"_s)},
        {u"settings-restored"_s, settingsRestored},
        {u"settings-checking"_s, checkingForUpdates},
        {u"settings-accent"_s, settings, QColor(0xE8731A)},
        {u"about"_s, about},
        {u"onboarding-1-welcome"_s, onboarding(0)},
        {u"onboarding-1-accent"_s, onboarding(0), QColor(0xE8731A)},
        {u"onboarding-2-permissions"_s, onboarding(1)},
        {u"onboarding-3-model"_s, onboarding(2)},
        {u"onboarding-4-shortcuts"_s, onboarding(3)},
    };
    return all;
}

}  // namespace tralio
