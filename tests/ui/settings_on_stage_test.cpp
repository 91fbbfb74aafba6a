#include <QTest>

#include "engine/hosts.h"
#include "ui/kit/menu_button.h"
#include "ui/kit/theme.h"
#include "ui/stage.h"

namespace tralio {
namespace {

/// The settings in the whole window, in the hands of a user.
class SettingsOnStage : public testing::Test {
protected:
    SettingsOnStage() { Theme::setAppearance({.reducedMotion = true}); }
    ~SettingsOnStage() override { Theme::setAppearance({}); }

    void open() {
        stage.open();
        stage.click(u"Cài đặt"_s);
    }
    [[nodiscard]] QString setting(const QString& name) const {
        return stage.store.text(u"app_setting_"_s + name).value_or(QString());
    }
    void chooseProvider(const QString& name) {
        QTest::mouseClick(stage.find<MenuButton>(), Qt::LeftButton);
        stage.click(name);
    }
    void focus(const QString& name) {
        ASSERT_TRUE(stage.hasControl(name)) << qPrintable(name);
        stage.press(Qt::Key_Shift);  // a ring shows only to who uses the keyboard
        stage.controls(name).constFirst()->setFocus(Qt::TabFocusReason);
    }
    Stage stage;
};

TEST_F(SettingsOnStage, every_control_asks_for_what_it_says) {
    stage.desktop.permissions.accessibility = false;
    stage.desktop.permissions.screenCapture = false;
    stage.desktop.permissions.grantOnRequest = true;
    stage.store.setValue(u"app_setting_custom_prompt"_s, u"my own"_s);
    stage.model.translatesTo(u"Xin chào"_s);
    open();

    stage.click(u"Mở cẩm nang ↗"_s);
    EXPECT_EQ(stage.opened, QList{QUrl(u"https://%1/guide.html"_s.arg(hosts::website))});
    stage.click(u"⌥ T"_s);
    EXPECT_EQ(setting(u"hotkey_display"_s), u"⌥ T"_s);
    EXPECT_EQ(stage.desktop.hotKeys.registrations().back().combination.key, KeyCode::t);
    stage.click(u"⌥ C"_s);
    EXPECT_EQ(setting(u"ocr_hotkey_display"_s), u"⌥ C"_s);
    EXPECT_EQ(stage.desktop.hotKeys.registrations().back().combination.key, KeyCode::c);
    EXPECT_TRUE(stage.hasControl(u"Chụp: ⌥ C"_s)) << "the footer shows another";

    stage.click(u"Kiểm tra kết nối"_s);
    stage.wait([this] { return stage.hasControl(u"Kiểm tra kết nối"_s); });
    EXPECT_EQ(stage.model.requests().size(), 1);
    chooseProvider(u"OpenAI"_s);
    EXPECT_EQ(setting(u"preset_id"_s), u"openai"_s);
    stage.store.setValue(u"app_setting_base_url"_s, u"http://model.example.com/v1"_s);

    stage.click(u"Mặc định"_s);
    EXPECT_EQ(setting(u"custom_prompt"_s), AppSettings::defaultPrompt);
    stage.click(u"Tự động dịch khi mở từ Clipboard"_s);
    EXPECT_EQ(stage.store.boolean(u"app_setting_auto_paste"_s), false);

    const auto requests = [this] {
        return stage.controls(u"Cần cấp quyền Trợ năng (Accessibility): Cấp quyền"_s) +
            stage.controls(u"Cần cấp quyền Ghi màn hình (Screen Recording): Cấp quyền"_s);
    };
    for (int missing = 2; missing > 0; --missing) {
        ASSERT_EQ(requests().size(), missing);
        QTest::mouseClick(requests().constFirst(), Qt::LeftButton);
        stage.desktop.clock.advance(1s);
        stage.settle();
    }
    EXPECT_TRUE(stage.desktop.permissions.accessibility && stage.desktop.permissions.screenCapture);
    EXPECT_TRUE(requests().isEmpty());
    EXPECT_THAT(stage.texts(),
        testing::IsSupersetOf(
            {u"Quyền Trợ năng (Accessibility): Đã bật"_s, u"Quyền Ghi màn hình (OCR): Đã bật"_s}));

    stage.click(u"Kiểm tra cập nhật"_s);
    EXPECT_TRUE(stage.updates.statusMessage().has_value());
    stage.click(u"Khôi phục mặc định"_s);
    EXPECT_EQ(setting(u"hotkey_display"_s), u"⌘ ⇧ D"_s);
    EXPECT_EQ(setting(u"preset_id"_s), u"kavo"_s);
    stage.click(u"Xem giới thiệu"_s);
    EXPECT_TRUE(stage.hasControl(u"Bỏ qua"_s));
}

TEST_F(SettingsOnStage, the_endpoint_of_the_users_own_is_tested_as_it_is_written) {
    stage.store.setValue(u"app_setting_preset_id"_s, u"custom"_s);
    stage.store.setValue(u"app_setting_api_key"_s, u"sk-own"_s);
    stage.model.replies(StandInReply::error(400, u"No such model"_s));
    open();
    stage.click(u"Kiểm tra"_s);
    EXPECT_TRUE(stage.model.requests().isEmpty()) << "the key would go unencrypted to another machine";
    stage.click(u"Vẫn gửi"_s);
    EXPECT_FALSE(stage.hasControl(u"Vẫn gửi"_s)) << "asked once";
    stage.click(u"Kiểm tra"_s);
    stage.wait([this] { return !stage.controls(u"Kiểm tra"_s).constFirst()->isBusy(); });
    ASSERT_EQ(stage.model.requests().size(), 1);
    EXPECT_EQ(stage.model.requests().last().header("Authorization"), "Bearer sk-own");
    EXPECT_THAT(stage.texts(),
        Contains(testing::Truly([](const QString& text) { return text.contains(u"No such model"_s); })));
}

TEST_F(SettingsOnStage, the_keyboard_keeps_its_place_when_what_has_it_is_busy_or_gone) {
    stage.store.setValue(u"app_setting_preset_id"_s, u"custom"_s);
    stage.model.replies(StandInReply::error(401, u"no"_s).delivered(StandInReply::Delivery::held));
    stage.desktop.permissions.accessibility = false;
    stage.desktop.permissions.grantOnRequest = true;
    open();

    focus(u"Kiểm tra"_s);
    stage.press(Qt::Key_Space);
    stage.press(Qt::Key_Space);  // the impatient second one
    EXPECT_NE(stage.store.boolean(u"app_setting_auto_paste"_s), false);
    stage.wait([this] { return stage.model.requests().size() == 1; });
    stage.model.sendTheRest();
    stage.wait([this] { return !stage.controls(u"Kiểm tra"_s).constFirst()->isBusy(); });
    EXPECT_EQ(focusedTitle(), u"Kiểm tra"_s);
    EXPECT_TRUE(stage.controls(u"Kiểm tra"_s).constFirst()->showsFocusRing());

    focus(u"Kiểm tra cập nhật"_s);
    stage.press(Qt::Key_Space);
    EXPECT_EQ(focusedTitle(), QString());
    stage.wait([this] { return stage.model.requests().size() == 2; });
    stage.model.sendTheRest();
    stage.wait([this] { return !stage.updates.isChecking(); });
    EXPECT_EQ(focusedTitle(), u"Kiểm tra cập nhật"_s);

    focus(u"Cần cấp quyền Trợ năng (Accessibility): Cấp quyền"_s);
    stage.desktop.permissions.screenCapture = false;
    stage.desktop.clock.advance(1s);
    stage.settle();
    EXPECT_EQ(focusedTitle(), u"Cấp quyền"_s) << "the other one is missing as well";
    stage.desktop.permissions.screenCapture = true;
    stage.press(Qt::Key_Space);
    stage.desktop.clock.advance(1s);
    stage.settle();
    EXPECT_EQ(focusedTitle(), QString()) << "the keyboard went on to something that the user does not expect";
    stage.press(Qt::Key_Tab);
    EXPECT_EQ(focusedTitle(), u"Kiểm tra cập nhật"_s);
}

}  // namespace
}  // namespace tralio
