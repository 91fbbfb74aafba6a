#include <QScrollBar>

#include "engine/hosts.h"
#include "ui/about/about_view.h"
#include "ui/history/history_row.h"
#include "ui/kit/label.h"
#include "ui/kit/scroll_panel.h"
#include "ui/stage_test.h"

namespace tralio {
namespace {

const QString selectionMissing = u"Chưa cấp quyền Trợ năng"_s;
const QString captureMissing = u"Chưa cấp quyền Chụp màn hình"_s;

TEST_F(StageTest, the_input_survives_a_change_of_the_tab_and_the_result_does_not) {
    open();
    translate(u"typed"_s);
    click(u"Tác giả"_s);
    click(u"Tralio"_s);
    EXPECT_EQ(input(), u"typed"_s);
    EXPECT_EQ(result(), QString());
}

TEST_F(StageTest, only_what_reports_a_missing_permission_leads_to_the_settings) {
    desktop.permissions.accessibility = true;
    desktop.permissions.screenCapture = false;
    open();
    EXPECT_TRUE(hasControl(captureMissing));
    click(u"Bôi đen: ⌘ ⇧ D"_s);
    EXPECT_TRUE(isOnTab(u"Tralio"_s)) << "a chip that is fine led somewhere";
    for (const QString& trouble : {captureMissing, u"Chụp: ⌘ ⇧ S"_s}) {
        click(trouble);
        EXPECT_TRUE(isOnTab(u"Cài đặt"_s));
        click(u"Tralio"_s);
    }

    desktop.permissions.screenCapture = true;
    desktop.permissions.accessibility = false;
    pass(999ms);
    EXPECT_TRUE(hasControl(captureMissing)) << "looked up more often than each second";
    pass(1ms);
    EXPECT_TRUE(hasControl(selectionMissing));
    EXPECT_FALSE(hasControl(captureMissing));
    desktop.permissions.accessibility = true;
    appState.notifyPopoverOpened();
    settle();
    EXPECT_FALSE(hasControl(selectionMissing)) << "not looked up when the popover opens";
}

TEST_F(StageTest, every_opening_and_every_request_brings_the_translate_tab_and_nothing_else_does) {
    open();
    const auto bringsTheTab = [this](const auto& event) {
        click(u"Lịch sử"_s);
        event();
        settle();
        return isOnTab(u"Tralio"_s);
    };
    for (int time = 0; time < 2; ++time) {
        EXPECT_TRUE(bringsTheTab([this] { appState.notifyPopoverOpened(); }));
        EXPECT_TRUE(bringsTheTab([this] { appState.requestTranslation(u"the same text"_s); }));
    }
    EXPECT_FALSE(bringsTheTab([this] { appState.requestTranslation(u" \t"_s); }));
    EXPECT_FALSE(bringsTheTab([this] { appState.pendingTextToTranslate = QString(); }));
}

TEST_F(StageTest, nothing_that_was_put_off_outlives_the_main_view) {
    open();
    type(u"typed"_s);
    for (const QString& tab : {u"Lịch sử"_s, u"Tralio"_s}) {
        click(u"Tralio"_s);
        press(Qt::Key_Return);
        wait([this] { return hasControl(u"Sao chép"_s); });
        click(tab);
        click(u"Sao chép"_s);
    }
    click(u"Cài đặt"_s);
    holdReplies();
    click(u"Kiểm tra kết nối"_s);
    waitForRequests(3);
    appState.requestTranslation(u"picked"_s);
    ASSERT_TRUE(nextTurn());
    appState.notifyPopoverOpened();
    close();
    appState.requestTranslation(u"another"_s);
    model.sendTheRest();
    ASSERT_TRUE(nextTurn());
    desktop.clock.advance(2s);
    EXPECT_EQ(desktop.clock.pending(), 0);
    EXPECT_EQ(model.requests().size(), 3);
}

TEST_F(StageTest, an_offer_shows_until_it_is_dismissed_and_again_after_the_next_check) {
    const AppUpdateInfo offer{u"1.1.0"_s, u"Nhanh hơn"_s, u"https://update.example.com/a.zip"_s, {}};
    model.replies(StandInReply::withBody(200, offer.toJson()));
    open();
    EXPECT_FALSE(hasControl(u"Cập nhật ngay"_s));
    updates.checkForUpdates(false);
    wait([this] { return hasControl(u"Cập nhật ngay"_s); });
    click(u"Ẩn thông báo này"_s);
    EXPECT_FALSE(hasControl(u"Cập nhật ngay"_s));
    click(u"Cài đặt"_s);
    EXPECT_FALSE(hasControl(u"Cập nhật ngay"_s));
    click(u"Kiểm tra cập nhật"_s);
    wait([this] { return controls(u"Cập nhật ngay"_s).size() == 2; });
}

TEST_F(StageTest, both_install_buttons_install) {
    updates.updateInfo = AppUpdateInfo{u"1.1.0"_s, u"Nhanh hơn"_s, u"https://update.example.com/a.zip"_s, {}};
    updates.isUpdateAvailable = true;
    installer.packaged = true;
    open();
    click(u"Cài đặt"_s);
    const QList<Control*> buttons = controls(u"Cập nhật ngay"_s);
    ASSERT_EQ(buttons.size(), 2);
    for (Control* button : buttons)
        QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_EQ(websiteVisits, 2) << "a package manager updates this copy";
    EXPECT_FALSE(updates.isUpdating());

    installer.packaged = false;
    installer.programFault = u"Không có quyền."_s;
    QTest::mouseClick(buttons.first(), Qt::LeftButton);
    settle();
    const QString told = u"Không thể chạy tiến trình cập nhật: Không có quyền."_s;
    EXPECT_EQ(texts().count(told), 2) << "also in the banner, which may be alone on the screen";
}

TEST_F(StageTest, the_authors_panel_shows_the_version_that_runs_and_links_that_lead_to_the_maker) {
    open();
    click(u"Tác giả"_s);
    EXPECT_FALSE(textsIn(*find<AboutView>()).filter(u" 1.0.9"_s).isEmpty());
    for (Button* button : visibleParts<Button>(*find<AboutView>())) {
        QTest::mouseClick(button, Qt::LeftButton);
        EXPECT_FALSE(button->accessibleName().isEmpty());
    }
    QStringList schemes;
    for (const QUrl& url : opened) {
        schemes << url.scheme();
        const QString domain = url.host().isEmpty() ? url.path().section(u'@', 1) : url.host();
        EXPECT_TRUE(!domain.isEmpty() && hosts::website.endsWith(domain)) << qPrintable(domain);
    }
    EXPECT_THAT(schemes, ElementsAre(u"https"_s, u"mailto"_s, u"https"_s, u"https"_s));
}

TEST_F(StageTest, the_guide_and_the_end_of_the_program_are_one_click_away) {
    open();
    click(u"Hướng dẫn sử dụng (Mở tài liệu)"_s);
    EXPECT_EQ(opened, QList{QUrl(u"https://%1/guide.html"_s.arg(hosts::website))});
    click(u"Thoát ứng dụng Tralio"_s);
    EXPECT_EQ(quits, 1);
}

TEST_F(StageTest, what_is_missing_leads_to_the_cards_of_the_permissions_and_the_keyboard_along) {
    desktop.permissions.screenCapture = false;
    open();
    click(captureMissing);
    const Control* request = controls(u"Cần cấp quyền Ghi màn hình (Screen Recording): Cấp quyền"_s).value(0);
    ASSERT_NE(request, nullptr);
    EXPECT_EQ(request->visibleRegion().boundingRect(), request->rect());
    EXPECT_FALSE(request->hasFocus());

    click(u"Tralio"_s);
    focus(captureMissing);
    press(Qt::Key_Space);
    request = controls(u"Cần cấp quyền Ghi màn hình (Screen Recording): Cấp quyền"_s).value(0);
    ASSERT_NE(request, nullptr);
    EXPECT_TRUE(request->hasFocus());
}

TEST_F(StageTest, a_refused_hot_key_leads_to_the_shortcuts_and_not_to_the_permissions) {
    open();
    desktop.hotKeys.nextStatus = HotKeyStatus::taken;
    hotKeys.updateOCRHotKey(1, 768);
    settle();
    click(u"Chụp: ⌘ ⇧ S"_s);
    EXPECT_TRUE(isOnTab(u"Cài đặt"_s));
    EXPECT_FALSE(controls(u"⌥ C"_s).constFirst()->visibleRegion().isEmpty());
    find<ScrollPanel>()->verticalScrollBar()->setValue(10'000);
    click(u"Chụp: ⌘ ⇧ S"_s);
    EXPECT_FALSE(controls(u"⌥ C"_s).constFirst()->visibleRegion().isEmpty());
}

TEST_F(StageTest, the_version_stands_whole_beside_the_longest_shortcuts) {
    const QString longest = u"⌃ ⌥ ⇧ ⌘ Return"_s;
    refusePermissions();
    store.setValue(u"app_setting_hotkey_display"_s, longest);
    store.setValue(u"app_setting_ocr_hotkey_display"_s, longest);
    open();
    const auto* version = part<Label>([](const Label& label) { return label.text() == u"Tralio v1.0.9"; });
    ASSERT_NE(version, nullptr);
    EXPECT_GE(version->width(), version->sizeHint().width());
    ASSERT_TRUE(hasControl(u"Chưa cấp quyền: Trợ năng & Chụp"_s)) << "a screen reader says it whole";
    ASSERT_TRUE(hasControl(u"Bôi đen: Ctrl + Alt + Shift + Super + Return"_s));
    const Control* last = controls(u"Chụp: "_s + longest).constFirst();
    EXPECT_LE(last->mapTo(last->window(), last->rect().bottomRight()).x(), last->window()->width());
    EXPECT_GE(last->width(), last->sizeHint().width());
}

TEST_F(StageTest, what_was_deleted_can_be_taken_back_for_six_seconds_from_any_tab) {
    TranslationHistoryStore history(store);
    for (const QString& text : {u"one"_s, u"two"_s})
        history.add(text, u"x"_s, u"Tiếng Anh"_s, u"Tiếng Việt"_s, u"Tự nhiên"_s);
    const auto stored = [this] { return TranslationHistoryStore(store).items(); };
    open();
    click(u"Lịch sử"_s);
    click(u"Xóa"_s);
    EXPECT_EQ(stored().size(), 1);
    click(u"Hoàn tác"_s);
    EXPECT_EQ(stored(), history.items());
    EXPECT_FALSE(hasControl(u"Hoàn tác"_s));

    click(u"Xóa tất cả"_s);
    EXPECT_TRUE(stored().isEmpty());
    click(u"Cài đặt"_s);
    EXPECT_TRUE(hasControl(u"Hoàn tác"_s));
    pass(5999ms);
    click(u"Hoàn tác"_s);
    EXPECT_EQ(stored(), history.items());

    click(u"⌥ T"_s);
    click(u"Khôi phục mặc định"_s);
    const auto shortcut = [this] { return store.text(u"app_setting_hotkey_display"_s); };
    EXPECT_EQ(shortcut(), u"⌘ ⇧ D"_s);
    click(u"Khôi phục mặc định"_s);  // of a hand that clicks twice
    click(u"Hoàn tác"_s);
    EXPECT_EQ(shortcut(), u"⌥ T"_s);

    click(u"Khôi phục mặc định"_s);
    desktop.clock.advance(6s);
    wait([this] { return !hasControl(u"Hoàn tác"_s); });
    EXPECT_EQ(shortcut(), u"⌘ ⇧ D"_s);
}

TEST_F(StageTest, a_picked_entry_fills_the_input_without_being_translated) {
    TranslationHistoryStore(store).add(
        u"hello"_s, u"xin chào"_s, u"Tiếng Anh"_s, u"Tiếng Việt"_s, u"Tự nhiên"_s);
    open();
    click(u"Lịch sử"_s);
    QTest::mouseClick(find<HistoryRow>(), Qt::LeftButton);
    wait([this] { return isOnTab(u"Tralio"_s); });
    EXPECT_EQ(input(), u"hello"_s);
    EXPECT_TRUE(model.requests().isEmpty());
}

TEST_F(StageTest, a_text_that_comes_during_the_first_walk_through_is_translated_after_it) {
    store.setValue(u"hasCompletedOnboarding"_s, false);
    open();
    appState.requestTranslation(u"hello"_s);
    settle();
    pass(1s);
    EXPECT_EQ(find<ReadingArea>(), nullptr) << "there is nothing to be seen of it yet";
    click(u"Bỏ qua"_s);
    desktop.clock.advance(1s);
    wait([this] { return hasControl(u"Sao chép"_s); });
    EXPECT_EQ(result(), u"HELLO"_s);
}

}  // namespace
}  // namespace tralio
