#include <QPainter>

#include <numeric>
#include <thread>

#include "engine/hosts.h"
#include "ui/about/about_view.h"
#include "ui/settings/permission_cards.h"
#include "ui/stage_test.h"

namespace tralio {
namespace {

const QString selectionMissing = u"Chưa cấp quyền Trợ năng"_s;
const QString captureMissing = u"Chưa cấp quyền Chụp màn hình"_s;

TEST_F(StageTest, what_is_missing_leads_to_the_permissions_and_a_refused_hot_key_to_the_shortcuts) {
    desktop.permissions.screenCapture = false;
    openAt(u"Bôi đen: ⌘ ⇧ D"_s);
    EXPECT_TRUE(isOnTab(u"Tralio"_s)) << "a chip that is fine led somewhere";
    EXPECT_FALSE(controls(u"Bôi đen: ⌘ ⇧ D"_s).constFirst()->focusPolicy() & Qt::TabFocus);
    EXPECT_TRUE(controls(captureMissing).constFirst()->focusPolicy() & Qt::TabFocus);
    const QString request = u"Cần cấp quyền Ghi màn hình (Screen Recording): Cấp quyền"_s;
    for (const QString& trouble : {captureMissing, u"Chụp: ⌘ ⇧ S"_s}) {
        click(trouble);
        const auto* cards = find<PermissionCards>();
        EXPECT_EQ(cards->visibleRegion().boundingRect(), cards->rect());
        EXPECT_FALSE(controls(request).constFirst()->hasFocus());
        click(u"Tralio"_s);
    }
    focus(captureMissing);
    desktop.permissions.grantOnRequest = true;
    press(Qt::Key_Space, Qt::Key_Space);
    EXPECT_FALSE(desktop.permissions.screenCapture) << "a second press on the warning";
    press(Qt::Key_Tab);
    EXPECT_TRUE(controls(request).constFirst()->hasFocus());

    press(Qt::Key_Space);
    EXPECT_TRUE(desktop.permissions.screenCapture);
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

    desktop.hotKeys.nextStatus = HotKeyStatus::taken;
    hotKeys.updateOCRHotKey(1, 768);
    settle();
    for (int time = 0; time < 2; ++time) {
        click(u"Chụp: ⌘ ⇧ S"_s);
        EXPECT_FALSE(controls(u"⌥ C"_s).constFirst()->visibleRegion().isEmpty());
        EXPECT_THAT(texts(), Contains(u"Phím tắt này đang được ứng dụng khác sử dụng."_s));
        find<ScrollPanel>()->verticalScrollBar()->setValue(10'000);
    }
}

TEST_F(StageTest, letters_are_lighter_than_where_nobody_has_asked_for_it) {
    open();
    const auto ink = [] {
        QImage page(300, 40, QImage::Format_Grayscale8);
        page.fill(Qt::white);
        QPainter painter(&page);
        painter.setFont(fontFor(text::body));
        painter.drawText(page.rect(), Qt::AlignCenter, u"Xin chào, thế giới"_s);
        painter.end();
        return std::accumulate(page.constBits(), page.constBits() + page.sizeInBytes(), 0.0,
            [](double sum, uchar lightness) { return sum + 255 - lightness; });
    };
    double usual = 0;  // each thread loads its own fonts
    std::thread([&] { usual = ink(); }).join();
    EXPECT_GT(ink(), usual / 2);
    EXPECT_LT(ink(), 0.97 * usual);
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
        submit(u"TYPED"_s);
        click(tab, u"Sao chép"_s);
    }
    holdReplies();
    click(u"Cài đặt"_s, u"Kiểm tra kết nối"_s);
    waitForRequests(3);
    appState.requestTranslation(u"picked"_s);
    ASSERT_TRUE(nextTurn());
    appState.notifyPopoverOpened();
    close();
    appState.requestTranslation(u"another"_s);
    model.sendTheRest();
    ASSERT_TRUE(nextTurn());
    EXPECT_EQ(desktop.clock.pending(), 0);
    model.replies({});
    updates.checkForUpdates(false);
    wait([this] { return !updates.isChecking(); });
    EXPECT_EQ(model.requests().size(), 4) << "more than the connections' tests and this one";
}

TEST_F(StageTest, an_offer_shows_until_it_is_dismissed_and_after_the_next_check_and_both_buttons_install) {
    const AppUpdateInfo offer{u"1.1.0"_s, u"Nhanh hơn"_s, u"https://update.example.com/a.zip"_s, {}};
    const QString install = u"Cập nhật ngay"_s;
    model.replies(StandInReply::withBody(200, offer.toJson()));
    installer.packaged = true;
    open();
    EXPECT_FALSE(hasControl(install));
    updates.checkForUpdates(false);
    wait([&] { return hasControl(install); });
    click(u"Ẩn thông báo này"_s);
    EXPECT_FALSE(hasControl(install));
    click(u"Cài đặt"_s);
    EXPECT_FALSE(hasControl(install));
    click(u"Kiểm tra cập nhật"_s);
    wait([&] { return controls(install).size() == 2; });
    EXPECT_FALSE(hasControl(u"Kiểm tra cập nhật"_s));
    EXPECT_THAT(texts(), testing::IsSupersetOf({u"Đã có bản cập nhật mới: v1.1.0"_s, offer.releaseNotes}));
    for (Control* button : controls(install))
        QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_EQ(websiteVisits, 2) << "a package manager updates this copy";
    EXPECT_FALSE(updates.isUpdating());

    installer.packaged = false;
    installer.programFault = u"Không có quyền."_s;
    click(install);
    const QString told = u"Không thể chạy tiến trình cập nhật: Không có quyền."_s;
    EXPECT_EQ(texts().count(told), 2) << "also in the banner, which may be alone on the screen";

    updates.updateInfo = AppUpdateInfo{{}, u"Chương "_s.repeated(500'000), {}, {}};
    settle();
    EXPECT_LT(find<ScrollPanel>()->widget()->height(), 5000) << "a server may send a book";
    updates.isUpdating = true;
    updates.downloadProgress = 0.427;
    settle();
    EXPECT_EQ(texts().count(u"42%"_s), 2);
    EXPECT_FALSE(hasControl(install));
    EXPECT_FALSE(hasControl(u"Ẩn thông báo này"_s)) << "the banner stays while it shows the progress";
    updates.isChecking = true;
    settle();
    EXPECT_LT(texts().count(u"42%"_s), 2);
}

TEST_F(StageTest, the_authors_panel_shows_the_version_and_leads_to_the_maker_the_footer_to_guide_and_end) {
    openAt(u"Hướng dẫn sử dụng (Mở tài liệu)"_s, u"Tác giả"_s);
    EXPECT_THAT(opened, ElementsAre(QUrl(u"https://%1/guide.html"_s.arg(hosts::website))));
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
    EXPECT_THAT(schemes, ElementsAre(u"https"_s, u"https"_s, u"mailto"_s, u"https"_s, u"https"_s));
    click(u"Thoát ứng dụng Tralio"_s);
    EXPECT_EQ(quits, 1);
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
    const QStringList history{u"one"_s, u"two"_s, u"three"_s, u"four"_s};
    fillHistory(history);
    useOwnEndpoint();
    openAt(u"Lịch sử"_s, u"Xóa"_s);
    EXPECT_EQ(stored(), history.mid(1));
    EXPECT_THAT(texts(), Contains(u"Đã xóa một bản dịch"_s));
    pass(5s);
    click(u"Tác giả"_s, u"Lịch sử"_s, u"Xóa"_s);
    EXPECT_THAT(texts(), Contains(u"Đã xóa 2 bản dịch"_s));
    pass(5999ms);
    click(u"Hoàn tác"_s);
    EXPECT_EQ(stored(), history) << "all that was deleted meanwhile";
    EXPECT_FALSE(hasControl(u"Hoàn tác"_s));

    click(u"Xóa tất cả"_s, u"Tralio"_s);
    type(u"typed"_s);
    pressUndo();
    EXPECT_EQ(input(), QString());
    EXPECT_THAT(stored(), IsEmpty()) << "an editor undoes what was typed";
    click(u"Cài đặt"_s);
    field(u"API Key"_s)->setFocus();
    pressUndo();
    EXPECT_EQ(stored(), history) << "a masked text has no undo of its own";

    click(u"⌥ T"_s);
    const QString reset = u"Khôi phục mặc định"_s;
    click(reset, reset, u"Hoàn tác"_s);  // the hand clicks twice
    EXPECT_EQ(setting(u"hotkey_display"_s), u"⌥ T"_s);
    click(reset);
    pass(6s);
    wait([this] { return !hasControl(u"Hoàn tác"_s); });
    EXPECT_EQ(setting(u"hotkey_display"_s), u"⌘ ⇧ D"_s);
}

TEST_F(StageTest, a_text_that_comes_during_the_first_walk_through_is_translated_after_it) {
    store.setValue(u"hasCompletedOnboarding"_s, false);
    open();
    appState.requestTranslation(u"hello"_s);
    settle();
    pass(1s);
    EXPECT_EQ(find<ReadingArea>(), nullptr) << "there is nothing to be seen of it yet";
    click(u"Bỏ qua"_s);
    pass(1s);
    wait([this] { return result() == u"HELLO"_s; });
}

}  // namespace
}  // namespace tralio
