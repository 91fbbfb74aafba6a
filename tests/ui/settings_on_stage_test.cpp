#include <QLineEdit>
#include <QTest>

#include "engine/hosts.h"
#include "ui/kit/menu_button.h"
#include "ui/stage_test.h"

namespace tralio {
namespace {

TEST_F(StageTest, every_control_of_the_settings_asks_for_what_it_says) {
    refusePermissions();
    store.setValue(u"app_setting_custom_prompt"_s, u"my own"_s);
    model.translatesTo(u"Xin chào"_s);
    open();
    click(u"Cài đặt"_s);

    click(u"Mở cẩm nang ↗"_s);
    EXPECT_EQ(opened, QList{QUrl(u"https://%1/guide.html"_s.arg(hosts::website))});
    click(u"⌥ T"_s);
    EXPECT_EQ(setting(u"hotkey_display"_s), u"⌥ T"_s);
    EXPECT_EQ(desktop.hotKeys.registrations().back().combination.key, KeyCode::t);
    click(u"⌥ C"_s);
    EXPECT_EQ(setting(u"ocr_hotkey_display"_s), u"⌥ C"_s);
    EXPECT_EQ(desktop.hotKeys.registrations().back().combination.key, KeyCode::c);
    EXPECT_TRUE(hasControl(u"Chụp: ⌥ C"_s)) << "the footer shows another";

    EXPECT_THAT(texts(), Contains(AppSettings::defaultModel));
    const auto showsFields = [this] { return !visibleParts<QLineEdit>(window()).isEmpty(); };
    EXPECT_FALSE(showsFields()) << "of the maker's own provider";
    click(u"Kiểm tra kết nối"_s);
    EXPECT_FALSE(controls(u"Đang kiểm tra..."_s).constFirst()->isEnabled());
    wait([this] { return hasControl(u"Kiểm tra kết nối"_s); });
    EXPECT_EQ(model.requests().size(), 1);
    QTest::mouseClick(find<MenuButton>(), Qt::LeftButton);
    click(u"OpenAI"_s);
    EXPECT_EQ(setting(u"preset_id"_s), u"openai"_s);
    EXPECT_EQ(find<MenuButton>()->title(), u"OpenAI"_s);
    EXPECT_TRUE(showsFields() && hasControl(u"Kiểm tra"_s) && !hasControl(u"Kiểm tra kết nối"_s));
    store.setValue(u"app_setting_base_url"_s, u"http://model.example.com/v1"_s);

    click(u"Mặc định"_s);
    EXPECT_EQ(setting(u"custom_prompt"_s), AppSettings::defaultPrompt);
    click(u"Tự động dịch khi mở từ Clipboard"_s);
    EXPECT_EQ(store.boolean(u"app_setting_auto_paste"_s), false);

    for (const QString& request : {u"Cần cấp quyền Trợ năng (Accessibility): Cấp quyền"_s,
             u"Cần cấp quyền Ghi màn hình (Screen Recording): Cấp quyền"_s}) {
        click(request);
        desktop.clock.advance(1s);
        settle();
        EXPECT_FALSE(hasControl(request));
    }
    EXPECT_TRUE(desktop.permissions.accessibility && desktop.permissions.screenCapture);
    EXPECT_THAT(texts(),
        testing::IsSupersetOf(
            {u"Quyền Trợ năng (Accessibility): Đã bật"_s, u"Quyền Ghi màn hình (OCR): Đã bật"_s}));

    click(u"Kiểm tra cập nhật"_s);
    EXPECT_TRUE(updates.statusMessage().has_value());
    click(u"Khôi phục mặc định"_s);
    EXPECT_EQ(setting(u"hotkey_display"_s), u"⌘ ⇧ D"_s);
    EXPECT_EQ(setting(u"preset_id"_s), u"kavo"_s);
    click(u"Xem giới thiệu"_s);
    EXPECT_TRUE(hasControl(u"Bỏ qua"_s));
}

TEST_F(StageTest, the_endpoint_of_the_users_own_is_tested_as_it_is_written) {
    store.setValue(u"app_setting_preset_id"_s, u"custom"_s);
    store.setValue(u"app_setting_api_key"_s, u"sk-own"_s);
    model.replies(StandInReply::error(400, u"No such model"_s));
    open();
    click(u"Cài đặt"_s);
    click(u"Kiểm tra"_s);
    EXPECT_TRUE(model.requests().isEmpty()) << "the key would go unencrypted to another machine";
    click(u"Vẫn gửi"_s);
    EXPECT_FALSE(hasControl(u"Vẫn gửi"_s)) << "asked once";
    click(u"Kiểm tra"_s);
    wait([this] { return !controls(u"Kiểm tra"_s).constFirst()->isBusy(); });
    ASSERT_EQ(model.requests().size(), 1);
    EXPECT_EQ(model.requests().last().header("Authorization"), "Bearer sk-own");
    EXPECT_THAT(texts(),
        Contains(testing::Truly([](const QString& text) { return text.contains(u"No such model"_s); })));
}

TEST_F(StageTest, the_keyboard_keeps_its_place_when_what_has_it_is_busy_or_gone) {
    store.setValue(u"app_setting_preset_id"_s, u"custom"_s);
    model.replies(StandInReply::error(401, u"no"_s).delivered(StandInReply::Delivery::held));
    desktop.permissions.accessibility = false;
    desktop.permissions.grantOnRequest = true;
    open();
    click(u"Cài đặt"_s);

    focus(u"Kiểm tra"_s);
    press(Qt::Key_Space);
    press(Qt::Key_Space);  // the impatient second one
    EXPECT_NE(store.boolean(u"app_setting_auto_paste"_s), false);
    wait([this] { return model.requests().size() == 1; });
    model.sendTheRest();
    wait([this] { return !controls(u"Kiểm tra"_s).constFirst()->isBusy(); });
    EXPECT_EQ(focusedTitle(), u"Kiểm tra"_s);
    EXPECT_TRUE(controls(u"Kiểm tra"_s).constFirst()->showsFocusRing());

    focus(u"Kiểm tra cập nhật"_s);
    press(Qt::Key_Space);
    EXPECT_EQ(focusedTitle(), QString());
    wait([this] { return model.requests().size() == 2; });
    model.sendTheRest();
    wait([this] { return !updates.isChecking(); });
    EXPECT_EQ(focusedTitle(), u"Kiểm tra cập nhật"_s);

    focus(u"Cần cấp quyền Trợ năng (Accessibility): Cấp quyền"_s);
    desktop.permissions.screenCapture = false;
    desktop.clock.advance(1s);
    settle();
    EXPECT_EQ(focusedTitle(), u"Cấp quyền"_s) << "the other one is missing as well";
    desktop.permissions.screenCapture = true;
    press(Qt::Key_Space);
    desktop.clock.advance(1s);
    settle();
    EXPECT_EQ(focusedTitle(), QString()) << "the keyboard went on to something that the user does not expect";
    press(Qt::Key_Tab);
    EXPECT_EQ(focusedTitle(), u"Kiểm tra cập nhật"_s);
}

}  // namespace
}  // namespace tralio
