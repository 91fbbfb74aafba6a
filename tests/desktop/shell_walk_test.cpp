#include <optional>

#include "desktop/program_run.h"
#include "desktop/virtual_desktop.h"
#include "platform/linux/x11/x11_hot_keys.h"
#include "support/core_limit.h"
#include "support/testing.h"

namespace tralio {
namespace {

/// A user's way through the whole program.
class ShellWalk : public testing::Test {
protected:
    void start(ProgramRun::Start kind = ProgramRun::Start::usual) {
        program.emplace(desktop, kind);
        program->standIn().translatesTo(u"xong"_s);
    }
    bool comes(const QString& beginning) {
        return waitUntil([&] { return program->shows(beginning); });
    }
    bool goes(const QString& beginning) {
        return waitUntil([&] { return !program->shows(beginning); });
    }
    static QStringList texts(const StandInModel& model) {
        QStringList texts;
        for (const auto& request : model.requests())
            texts.append(request.userText());
        return texts;
    }
    bool modelGets(const QString& text) {
        return waitUntil([&] { return texts(program->standIn()).contains(text); });
    }
    /// Whether some program has a hot key.
    bool isTaken(const KeyCombination& combination) {
        qputenv("DISPLAY", desktop.environment().value(u"DISPLAY"_s).toUtf8());
        const auto connection = X11Connection::open();
        X11RawInput rawInput(*connection);
        X11HotKeys hotKeys(*connection, rawInput);
        return hotKeys.registerHotKey(combination, textHotKeyID).status == HotKeyStatus::taken;
    }

    VirtualDesktop desktop;
    std::optional<ProgramRun> program;
};

TEST_F(ShellWalk, newcomers_are_led_through_by_keyboard_and_mouse) {
    start(ProgramRun::Start::first);
    ASSERT_TRUE(program->openByHotKey());
    ASSERT_TRUE(comes(u"Chào mừng đến với Tralio"_s));
    desktop.press(u"Return"_s);
    ASSERT_TRUE(comes(u"Cấp Quyền Hệ Thống"_s));
    ASSERT_TRUE(program->click(u"Tiếp tục"_s));
    ASSERT_TRUE(comes(u"Mô Hình AI"_s));
    ASSERT_TRUE(program->click(u"Quay lại"_s));
    ASSERT_TRUE(comes(u"Cấp Quyền Hệ Thống"_s));
    desktop.press(u"Return"_s);
    ASSERT_TRUE(comes(u"Mô Hình AI"_s));
    desktop.press(u"Tab"_s);
    desktop.press(u"shift+Tab"_s);
    desktop.press(u"space"_s);
    ASSERT_TRUE(comes(u"Phím Tắt & Cách Dùng Nhanh"_s));
    ASSERT_TRUE(program->click(u"Bắt đầu sử dụng"_s));
    EXPECT_TRUE(comes(u"Dán & Tralio"_s));
}

TEST_F(ShellWalk, accessibility_is_granted_by_the_buttons_of_the_settings_and_of_the_walk_through) {
    desktop.setVariable(u"QT_LINUX_ACCESSIBILITY_ALWAYS_ON"_s, u"1"_s);  // for this test's own eyes
    desktop.setAccessibility(false);
    start();
    ASSERT_TRUE(program->openByHotKey());
    ASSERT_TRUE(program->click(u"Chưa cấp quyền Trợ năng"_s));
    ASSERT_TRUE(program->click(u"Cần cấp quyền Trợ năng (Accessibility): Cấp quyền"_s));
    EXPECT_TRUE(comes(u"Quyền Trợ năng (Accessibility): Đã bật"_s));
    EXPECT_TRUE(goes(u"Chưa cấp quyền"_s));

    desktop.setAccessibility(false);
    EXPECT_TRUE(comes(u"Chưa cấp quyền Trợ năng"_s));
    ASSERT_TRUE(program->click(u"Xem giới thiệu"_s));
    ASSERT_TRUE(program->click(u"Tiếp tục"_s));
    ASSERT_TRUE(comes(u"CHƯA CẤP"_s));
    ASSERT_TRUE(program->click(u"Mở Cài đặt để Bật Quyền Trợ Năng"_s));
    EXPECT_TRUE(goes(u"CHƯA CẤP"_s));
    EXPECT_TRUE(comes(u"ĐÃ CẤP"_s));
}

TEST_F(ShellWalk, a_recorded_hot_key_takes_the_place_of_the_former_one) {
    const KeyCombination former{KeyCode::d, Modifier::command | Modifier::shift};
    start();
    ASSERT_TRUE(program->openByHotKey());
    ASSERT_TRUE(isTaken(former));
    ASSERT_TRUE(program->click(u"Cài đặt"_s));
    ASSERT_TRUE(program->click(u"Tralio văn bản bôi đen: Đổi"_s));
    ASSERT_TRUE(comes(u"Tralio văn bản bôi đen: Đang chờ"_s));
    desktop.press(u"ctrl+alt+k"_s);
    ASSERT_TRUE(comes(u"Tralio văn bản bôi đen: Đổi"_s));
    EXPECT_TRUE(comes(u"Bôi đen: Ctrl + Alt + K"_s));
    EXPECT_TRUE(waitUntil([&] { return !isTaken(former); }));
    ASSERT_TRUE(program->closePopover());

    ASSERT_FALSE(desktop.selectInEditor(u"by the new key"_s).isEmpty());
    ASSERT_TRUE(waitUntil([&] { return desktop.primary() == u"by the new key"; }));
    desktop.press(u"ctrl+alt+k"_s);
    EXPECT_TRUE(modelGets(u"by the new key"_s));
}

TEST_F(ShellWalk, another_provider_with_an_address_of_ones_own_translates_from_now_on) {
    StandInModel own;
    own.translatesTo(u"bởi máy riêng"_s);
    start();
    ASSERT_TRUE(program->openByHotKey());
    ASSERT_TRUE(program->click(u"Cài đặt"_s));
    ASSERT_TRUE(program->click(u"Nhà cung cấp: "_s));
    ASSERT_TRUE(program->click(u"Ollama"_s));
    ASSERT_TRUE(comes(u"Nhà cung cấp: Ollama"_s));
    ASSERT_TRUE(program->click(u"API Endpoint (Base URL)"_s));
    desktop.press(u"ctrl+a"_s);
    desktop.type(own.baseURL());
    program->callOnBus(u"TranslateText"_s, {u"hello"_s});
    EXPECT_TRUE(waitUntil([&] { return program->shownTranslation() == u"bởi máy riêng"; }));
    EXPECT_THAT(texts(own), ElementsAre(u"hello"_s));
    EXPECT_THAT(texts(program->standIn()), ElementsAre());
}

TEST_F(ShellWalk, opening_translates_what_was_newly_copied_once_and_no_password) {
    start();
    const auto openAndClose = [&] {
        ASSERT_TRUE(program->clickTrayIcon());
        ASSERT_TRUE(waitUntil([&] { return program->isPopoverInFront(); }));
        EXPECT_FALSE(waitUntil([&] { return texts(program->standIn()).size() > 1; }, 1));
        ASSERT_TRUE(program->closePopover());
    };
    desktop.setClipboard(u"newly copied"_s);
    ASSERT_TRUE(program->clickTrayIcon());
    ASSERT_TRUE(modelGets(u"newly copied"_s));
    ASSERT_TRUE(program->closePopover());
    openAndClose();

    desktop.start(QStringLiteral(SELECTION_PROBE), {u"secret word"_s, u"--password"_s});
    ASSERT_TRUE(waitUntil([&] { return desktop.clipboard() == u"secret word"; }));
    openAndClose();

    desktop.setClipboard(u"copied later"_s);
    ASSERT_TRUE(program->clickTrayIcon());
    EXPECT_TRUE(modelGets(u"copied later"_s));
    EXPECT_THAT(texts(program->standIn()), ElementsAre(u"newly copied"_s, u"copied later"_s));
}

TEST_F(ShellWalk, other_programs_hand_over_texts_a_second_start_opens_the_first_and_its_button_ends_it) {
    start();
    program->callOnBus(u"TranslateText"_s, {u"  handed over  "_s});
    EXPECT_TRUE(modelGets(u"handed over"_s));
    EXPECT_TRUE(dumpsNoCore(program->process().processId()));
    EXPECT_TRUE(waitUntil([&] { return program->isPopoverInFront(); }));
    ASSERT_TRUE(program->closePopover());

    const QProcess& second = desktop.start(program->process().program());
    EXPECT_TRUE(waitUntil([&] { return second.state() == QProcess::NotRunning; }));
    EXPECT_EQ(second.exitCode(), 0);
    EXPECT_TRUE(waitUntil([&] { return program->isPopoverInFront(); }));

    ASSERT_FALSE(program->trayIcon().isEmpty());
    ASSERT_TRUE(program->click(u"Thoát ứng dụng Tralio"_s));
    ASSERT_TRUE(waitUntil([&] { return !program->isRunning(); }));
    EXPECT_EQ(program->process().exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program->process().exitCode(), 0);
    EXPECT_TRUE(program->trayIcon().isEmpty());
}

}  // namespace
}  // namespace tralio
