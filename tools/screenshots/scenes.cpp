#include "scenes.h"

#include <QKeyEvent>

#include "scene_props.h"
#include "support/pictures.h"
#include "ui/kit/reading_area.h"
#include "ui/stage.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

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

/// The input has changed since the translation, and the result has the focus.
void staleResult(Stage& stage) {
    result(stage);
    stage.type(u" And that is all."_s);
    stage.find<ReadingArea>()->setFocus(Qt::TabFocusReason);
    stage.settle();
}

void nothingSelected(Stage& stage) {
    stage.open();
    stage.appState.notice = u"Không có chữ nào đang được chọn"_s;
    stage.settle();
}

void errorAndBanner(Stage& stage) {
    stage.desktop.permissions.screenCapture = false;
    offerUpdate(stage);
    stage.model.replies(StandInReply::error(429, u"Rate limit reached"_s));
    typed(stage);
    stage.press(Qt::Key_Return);
    stage.wait([&] { return stage.model.requests().size() == 2 && stage.hasControl(u"Tralio (↵ Enter)"_s); });
}

void updateFailed(Stage& stage) {
    offerUpdate(stage);
    stage.installer.programFault =
        u"Bản Tralio này không chạy từ /Applications/Tralio.app nên không thể tự thay thế."_s;
    stage.open();
    stage.click(u"Cập nhật ngay"_s);
}

void dropHover(Stage& stage) {
    stage.open();
    dragFileOver(stage);
}

void recognizing(Stage& stage) {
    QImage photograph(40, 20, QImage::Format_RGB32);
    photograph.fill(Qt::white);
    stage.desktop.pasteboard.shown = encoded(photograph);
    stage.recognizer.hold = std::make_shared<QPromise<void>>();
    stage.recognizer.hold->start();
    stage.open();
    stage.click(u"Dán"_s);
    stage.wait([&] { return stage.hasControl(u"Hủy"_s); });
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

/// With one permission missing, and a provider that needs a key, which the user lets go to the stand-in
/// unencrypted.
void settingsOfOthers(Stage& stage) {
    stage.desktop.permissions.screenCapture = false;
    stage.store.setValue(u"app_setting_preset_id"_s, u"openai"_s);
    stage.store.setValue(u"app_setting_model"_s, u"gpt-4o-mini"_s);
    stage.store.setValue(u"app_setting_api_key"_s, u"sk-0123456789abcdefghijklm"_s);
    stage.store.setValue(u"app_setting_clear_text_origin"_s, u"http://model.example.com"_s);
    settings(stage);
}

/// The footer with everything that it can contain, and the settings that its warning opens.
void permissionsMissing(Stage& stage) {
    for (const QString& hotKey : {u"hotkey"_s, u"ocr_hotkey"_s})
        stage.store.setValue(u"app_setting_%1_display"_s.arg(hotKey), u"⌃ ⌥ ⇧ ⌘ Return"_s);
    stage.desktop.permissions.accessibility = false;
    stage.desktop.permissions.screenCapture = false;
    stage.open();
    stage.press(Qt::Key_Shift);  // the focus ring shows only after a key press
    const QList<Control*> warning = stage.controls(u"Chưa cấp quyền: Trợ năng & Chụp"_s);
    warning.constFirst()->setFocus(Qt::TabFocusReason);
    stage.press(Qt::Key_Space);
}

/// With the focus moved by keyboard: to a tab, a field or a button.
auto keyboardOn(const QString& name) {
    return [name](Stage& stage) {
        settingsOfOthers(stage);
        scrollTo(stage, u"Mô hình AI & Nhà cung cấp"_s);
        stage.press(Qt::Key_Shift);  // the focus ring shows only after a key press
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

/// Another program has the first hot key; the footer says so and opens the settings for it.
void hotKeyRefused(Stage& stage) {
    stage.open();
    stage.desktop.hotKeys.nextStatus = HotKeyStatus::taken;
    stage.hotKeys.updateOCRHotKey(1, 768);
    stage.settle();
    stage.click(u"Chụp: ⌘ ⇧ S"_s);
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

/// The key would go to another server than the user has agreed to.
void providerExposure(Stage& stage) {
    stage.store.setValue(u"app_setting_base_url"_s, u"http://llm.example.com/v1"_s);
    settingsOfOthers(stage);
    testConnection(stage, u"Kiểm tra"_s);
}

void providerCard(Stage& stage) {
    stage.model.translatesTo(u"Xin chào"_s);
    settings(stage);
    testConnection(stage, u"Kiểm tra kết nối"_s);
}

void clipboardCheckOff(Stage& stage) {
    settings(stage);
    scrollTo(stage, u"Tùy chọn & Chỉ dẫn AI"_s);
    stage.click(u"Tự động dịch khi mở từ Clipboard"_s);
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

/// The walk-through, advanced by `page` pages.
auto onboarding(int page) {
    return [page](Stage& stage) {
        stage.store.setValue(u"hasCompletedOnboarding"_s, false);
        stage.desktop.permissions.screenCapture = false;
        stage.open();
        for (int i = 0; i < page; ++i)
            stage.click(u"Tiếp tục"_s);
    };
}

void onboardingRefused(Stage& stage) {
    stage.settings.updateCustomHotKey(49, 6912, u"⌃ ⌥ ⇧ ⌘ Space"_s);
    onboarding(3)(stage);
    stage.hotKeys.keys().textStatus = HotKeyStatus::taken;
    stage.hotKeys.keys().ocrStatus = HotKeyStatus::taken;
    stage.settle();
}

}  // namespace

const QList<Scene>& scenes() {
    static const QList<Scene> all{
        {u"translate-empty"_s, empty},
        {u"translate-typed"_s, typed},
        {u"translate-translating"_s, translating},
        {u"translate-result"_s, result},
        {u"translate-stale-result"_s, staleResult},
        {u"translate-nothing-selected"_s, nothingSelected},
        {u"translate-error-banner"_s, errorAndBanner},
        {u"translate-update-failed"_s, updateFailed},
        {u"translate-drop-hover"_s, dropHover},
        {u"translate-recognizing"_s, recognizing},
        {u"translate-downloading"_s, downloading},
        {u"history-empty"_s, historyEmpty},
        {u"history-list"_s, historyList},
        {u"history-undo"_s, historyUndo},
        {u"settings-top"_s, settings},
        {u"settings-shortcuts-recording"_s, recording},
        {u"settings-shortcuts-refused"_s, hotKeyRefused},
        {u"settings-provider-fields"_s, providerFields},
        {u"settings-provider-exposure"_s, providerExposure},
        {u"settings-provider-card"_s, providerCard},
        {u"settings-clipboard-off"_s, clipboardCheckOff},
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
        {u"onboarding-4-refused"_s, onboardingRefused},
    };
    return all;
}

}  // namespace tralio
