#include <QScrollBar>
#include <QTest>

#include "engine/hosts.h"
#include "history/translation_history_store.h"
#include "ui/history/history_row.h"
#include "ui/kit/label.h"
#include "ui/kit/multiline_enter_input_view.h"
#include "ui/kit/reading_area.h"
#include "ui/kit/scroll_panel.h"
#include "ui/main_window_fixture.h"

namespace tralio {
namespace {

const QString selectionMissing = u"Chưa cấp quyền Trợ năng"_s;
const QString captureMissing = u"Chưa cấp quyền Chụp màn hình"_s;

TEST_F(MainWindow, the_input_survives_a_change_of_the_tab_and_the_result_does_not) {
    stage.open();
    stage.model.translatesTo(u"kết quả"_s);
    stage.type(u"typed"_s);
    stage.press(Qt::Key_Return);
    stage.wait([this] { return shows(u"Sao chép"_s); });
    stage.click(u"Tác giả"_s);
    stage.click(u"Tralio"_s);
    EXPECT_EQ(stage.find<MultilineEnterInputView>()->toPlainText(), u"typed"_s);
    EXPECT_EQ(stage.find<ReadingArea>()->toPlainText(), QString());
}

TEST_F(MainWindow, only_what_reports_a_missing_permission_leads_to_the_settings) {
    stage.desktop.permissions.accessibility = true;
    stage.desktop.permissions.screenCapture = false;
    stage.open();
    EXPECT_TRUE(shows(captureMissing));
    stage.click(u"Bôi đen: ⌘ ⇧ D"_s);
    EXPECT_TRUE(isOnTab(u"Tralio"_s)) << "a chip that is fine led somewhere";
    for (const QString& trouble : {captureMissing, u"Chụp: ⌘ ⇧ S"_s}) {
        stage.click(trouble);
        EXPECT_TRUE(isOnTab(u"Cài đặt"_s));
        stage.click(u"Tralio"_s);
    }

    stage.desktop.permissions.screenCapture = true;
    stage.desktop.permissions.accessibility = false;
    stage.desktop.clock.advance(1s);
    stage.wait([this] { return shows(selectionMissing); });
    EXPECT_FALSE(shows(captureMissing));
}

TEST_F(MainWindow, an_offer_shows_until_it_is_dismissed_and_again_after_the_next_check) {
    const AppUpdateInfo offer{u"1.1.0"_s, u"Nhanh hơn"_s, u"https://update.example.com/a.zip"_s, {}};
    stage.model.replies(StandInReply::withBody(200, offer.toJson()));
    stage.open();
    EXPECT_FALSE(shows(u"Cập nhật ngay"_s));
    stage.updates.checkForUpdates(false);
    stage.wait([this] { return shows(u"Cập nhật ngay"_s); });
    stage.click(u"Ẩn thông báo này"_s);
    EXPECT_FALSE(shows(u"Cập nhật ngay"_s));
    stage.click(u"Cài đặt"_s);
    EXPECT_FALSE(shows(u"Cập nhật ngay"_s));
    stage.click(u"Kiểm tra cập nhật"_s);
    stage.wait([this] { return stage.controls(u"Cập nhật ngay"_s).size() == 2; });
}

TEST_F(MainWindow, both_install_buttons_install_and_show_how_far_the_download_is) {
    stage.updates.updateInfo =
        AppUpdateInfo{u"1.1.0"_s, u"Nhanh hơn"_s, u"https://update.example.com/a.zip"_s, {}};
    stage.updates.isUpdateAvailable = true;
    stage.installer.packaged = true;
    stage.open();
    stage.click(u"Cài đặt"_s);
    const QList<Control*> buttons = stage.controls(u"Cập nhật ngay"_s);
    ASSERT_EQ(buttons.size(), 2);
    for (Control* button : buttons)
        QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_EQ(stage.websiteVisits, 2) << "a package manager updates this copy";

    stage.installer.packaged = false;
    stage.installer.programFault = u"Không có quyền."_s;
    QTest::mouseClick(buttons.first(), Qt::LeftButton);
    stage.settle();
    const QString told = u"Không thể chạy tiến trình cập nhật: Không có quyền."_s;
    EXPECT_EQ(stage.texts().count(told), 2) << "also in the banner, which may be alone on the screen";

    stage.updates.installationFailure = std::nullopt;
    stage.updates.isUpdating = true;
    stage.updates.downloadProgress = 0.427;
    stage.settle();
    EXPECT_FALSE(shows(u"Cập nhật ngay"_s));
    EXPECT_FALSE(shows(u"Ẩn thông báo này"_s));
    EXPECT_EQ(stage.texts().count(u"42%"_s), 2);
}

TEST_F(MainWindow, the_guide_and_the_end_of_the_program_are_one_click_away) {
    stage.open();
    stage.click(u"Hướng dẫn sử dụng (Mở tài liệu)"_s);
    EXPECT_EQ(stage.opened, QList{QUrl(u"https://%1/guide.html"_s.arg(hosts::website))});
    stage.click(u"Thoát ứng dụng Tralio"_s);
    EXPECT_EQ(stage.quits, 1);
}

TEST_F(MainWindow, what_is_missing_leads_to_the_cards_of_the_permissions_and_the_keyboard_along) {
    stage.desktop.permissions.screenCapture = false;
    stage.open();
    stage.click(captureMissing);
    const Control* request =
        stage.controls(u"Cần cấp quyền Ghi màn hình (Screen Recording): Cấp quyền"_s).value(0);
    ASSERT_NE(request, nullptr);
    EXPECT_EQ(request->visibleRegion().boundingRect(), request->rect());
    EXPECT_FALSE(request->hasFocus());

    stage.click(u"Tralio"_s);
    stage.press(Qt::Key_Shift);  // a ring shows only to who uses the keyboard
    stage.controls(captureMissing).constFirst()->setFocus(Qt::TabFocusReason);
    stage.press(Qt::Key_Space);
    request = stage.controls(u"Cần cấp quyền Ghi màn hình (Screen Recording): Cấp quyền"_s).value(0);
    ASSERT_NE(request, nullptr);
    EXPECT_TRUE(request->hasFocus());
}

TEST_F(MainWindow, a_refused_hot_key_leads_to_the_shortcuts_and_not_to_the_permissions) {
    stage.open();
    stage.desktop.hotKeys.nextStatus = HotKeyStatus::taken;
    stage.hotKeys.updateOCRHotKey(1, 768);
    stage.settle();
    stage.click(u"Chụp: ⌘ ⇧ S"_s);
    EXPECT_TRUE(isOnTab(u"Cài đặt"_s));
    EXPECT_FALSE(stage.controls(u"⌥ C"_s).constFirst()->visibleRegion().isEmpty());
    stage.find<ScrollPanel>()->verticalScrollBar()->setValue(10'000);
    stage.click(u"Chụp: ⌘ ⇧ S"_s);
    EXPECT_FALSE(stage.controls(u"⌥ C"_s).constFirst()->visibleRegion().isEmpty());
}

TEST_F(MainWindow, the_version_stands_whole_beside_the_longest_shortcuts) {
    const QString longest = u"⌃ ⌥ ⇧ ⌘ Return"_s;
    stage.desktop.permissions.accessibility = false;
    stage.desktop.permissions.screenCapture = false;
    stage.store.setValue(u"app_setting_hotkey_display"_s, longest);
    stage.store.setValue(u"app_setting_ocr_hotkey_display"_s, longest);
    stage.open();
    const auto* version =
        stage.part<Label>([](const Label& label) { return label.text() == u"Tralio v1.0.9"; });
    ASSERT_NE(version, nullptr);
    EXPECT_GE(version->width(), version->sizeHint().width());
    ASSERT_TRUE(shows(u"Chưa cấp quyền: Trợ năng & Chụp"_s)) << "a screen reader says it whole";
    ASSERT_TRUE(shows(u"Bôi đen: Ctrl + Alt + Shift + Super + Return"_s));
    const Control* last = stage.controls(u"Chụp: "_s + longest).constFirst();
    EXPECT_LE(last->mapTo(last->window(), last->rect().bottomRight()).x(), last->window()->width());
    EXPECT_GE(last->width(), last->sizeHint().width());
}

TEST_F(MainWindow, what_was_deleted_can_be_taken_back_for_six_seconds_from_any_tab) {
    TranslationHistoryStore history(stage.store);
    for (const QString& text : {u"one"_s, u"two"_s})
        history.add(text, u"x"_s, u"Tiếng Anh"_s, u"Tiếng Việt"_s, u"Tự nhiên"_s);
    const auto stored = [this] { return TranslationHistoryStore(stage.store).items(); };
    stage.open();
    stage.click(u"Lịch sử"_s);
    stage.click(u"Xóa"_s);
    EXPECT_EQ(stored().size(), 1);
    stage.click(u"Hoàn tác"_s);
    EXPECT_EQ(stored(), history.items());
    EXPECT_FALSE(shows(u"Hoàn tác"_s));

    stage.click(u"Xóa tất cả"_s);
    EXPECT_TRUE(stored().isEmpty());
    stage.click(u"Cài đặt"_s);
    EXPECT_TRUE(shows(u"Hoàn tác"_s));
    stage.desktop.clock.advance(5999ms);
    stage.settle();
    stage.click(u"Hoàn tác"_s);
    EXPECT_EQ(stored(), history.items());

    stage.click(u"⌥ T"_s);
    stage.click(u"Khôi phục mặc định"_s);
    const auto shortcut = [this] { return stage.store.text(u"app_setting_hotkey_display"_s); };
    EXPECT_EQ(shortcut(), u"⌘ ⇧ D"_s);
    stage.click(u"Khôi phục mặc định"_s);  // of a hand that clicks twice
    stage.click(u"Hoàn tác"_s);
    EXPECT_EQ(shortcut(), u"⌥ T"_s);

    stage.click(u"Khôi phục mặc định"_s);
    stage.desktop.clock.advance(6s);
    stage.wait([this] { return !shows(u"Hoàn tác"_s); });
    EXPECT_EQ(shortcut(), u"⌘ ⇧ D"_s);
}

TEST_F(MainWindow, a_picked_entry_fills_the_input_without_being_translated) {
    TranslationHistoryStore(stage.store)
        .add(u"hello"_s, u"xin chào"_s, u"Tiếng Anh"_s, u"Tiếng Việt"_s, u"Tự nhiên"_s);
    stage.open();
    stage.click(u"Lịch sử"_s);
    QTest::mouseClick(stage.find<HistoryRow>(), Qt::LeftButton);
    stage.wait([this] { return isOnTab(u"Tralio"_s); });
    EXPECT_EQ(stage.find<MultilineEnterInputView>()->toPlainText(), u"hello"_s);
    EXPECT_TRUE(stage.model.requests().isEmpty());
}

TEST_F(MainWindow, a_text_that_comes_during_the_first_walk_through_is_translated_after_it) {
    stage.store.setValue(u"hasCompletedOnboarding"_s, false);
    stage.model.translatesTo(u"xin chào"_s);
    stage.open();
    stage.appState.requestTranslation(u"hello"_s);
    stage.settle();
    stage.desktop.clock.advance(1s);
    stage.settle();
    EXPECT_EQ(stage.find<ReadingArea>(), nullptr) << "there is nothing to be seen of it yet";
    stage.click(u"Bỏ qua"_s);
    stage.desktop.clock.advance(1s);
    stage.wait([this] { return shows(u"Sao chép"_s); });
    EXPECT_EQ(stage.find<ReadingArea>()->toPlainText(), u"xin chào"_s);
}

}  // namespace
}  // namespace tralio
