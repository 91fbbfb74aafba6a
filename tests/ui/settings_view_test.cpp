#include <QClipboard>
#include <QTextEdit>

#include "common/text_limit.h"
#include "engine/hosts.h"
#include "engine/provider_preset.h"
#include "ui/kit/switch.h"
#include "ui/stage_test.h"

namespace tralio {
namespace {

/// The settings of a user with a provider and a key.
class SettingsPanelOnStage : public StageTest {
protected:
    SettingsPanelOnStage() {
        settings.applyPreset(ProviderPreset::presets()[3]);
        settings.apiKey = u"sk-secret"_s;
        settings.autoPaste = false;
        openAt(u"Cài đặt"_s);
    }

    [[nodiscard]] QStringList markedSuggestions() {
        QStringList titles;
        for (const Button* suggestion : visibleParts<Button>(window()))
            if (suggestion->isChecked())
                titles += suggestion->title();
        return titles;
    }
    [[nodiscard]] static bool takesInputMethods(QWidget* widget) {
        QInputMethodQueryEvent query(Qt::ImEnabled);
        QCoreApplication::sendEvent(widget, &query);
        return query.value(Qt::ImEnabled).toBool();
    }
    /// How far down a label stands; -1 where it is not to be seen.
    [[nodiscard]] int topOf(const QString& text) {
        const auto* label = part<Label>([&](const Label& label) { return label.text() == text; });
        return label == nullptr ? -1 : label->mapTo(&window(), QPoint()).y();
    }
};

TEST_F(SettingsPanelOnStage, a_shortcut_is_recorded_by_position_while_the_user_may_go_on_typing_in_a_field) {
    constexpr auto nowhere = static_cast<quint32>(-1);  // before the first position
    constexpr KeyCode capsLock{57};                     // swapped with Escape
    const auto isWaiting = [this] { return hasControl(u"Đang chờ..."_s); };
    QLineEdit* writtenIn = field(u"Tên Model"_s);
    writtenIn->setFocus();
    writtenIn->end(false);
    click(u"Đổi"_s);
    EXPECT_TRUE(writtenIn->hasFocus());
    EXPECT_FALSE(takesInputMethods(writtenIn)) << "one would take an accent with its modifiers first";
    typeKey(KeyCode::d, {}, Qt::Key_D, u"d"_s);
    typeKey(KeyCode::d, Qt::ShiftModifier, Qt::Key_D, u"D"_s);
    typeKey(KeyCode::d, Qt::KeypadModifier | Qt::GroupSwitchModifier, Qt::Key_D, u"d"_s);
    typeKey(KeyCode::leftOption, Qt::AltModifier, Qt::Key_Alt, {});
    typeKey(KeyCode::leftCommand, Qt::ControlModifier | Qt::MetaModifier, Qt::Key_Super_L, {});
    using enum KeyCode;
    for (const KeyCode modifier : {rightCommand, leftCommand, leftShift, leftOption, leftControl, rightShift,
             rightOption, rightControl})
        typeKey(modifier, Qt::AltModifier, Qt::Key_unknown, {});  // to which the layout gives no name
    typeKey(KeyCode{nowhere}, Qt::AltModifier, Qt::Key_Print, {});
    EXPECT_TRUE(isWaiting());
    typeKey(KeyCode::d, Qt::AltModifier | Qt::MetaModifier, 0x412, u"в"_s);
    EXPECT_FALSE(isWaiting());
    EXPECT_EQ(setting(u"model"_s), u"gpt-4o-minidDd");
    EXPECT_EQ(setting(u"hotkey_display"_s), u"⌥ ⌘ D");
    EXPECT_THAT(desktop.hotKeys.registrations(),
        ElementsAre(
            FakeHotKeyPlatform::Request{{KeyCode::d, Modifier::option | Modifier::command}, textHotKeyID}));
    EXPECT_TRUE(takesInputMethods(writtenIn));
    EXPECT_THAT(markedSuggestions(), ElementsAre(u"⌘ ⇧ S"_s)) << "no suggestion has what was recorded";
    click(u"Đổi"_s);
    typeKey(KeyCode::d, Qt::AltModifier, Qt::Key_D, u"d"_s);
    EXPECT_THAT(markedSuggestions(), ElementsAre(u"⌥ D"_s, u"⌘ ⇧ S"_s));
    click(u"⌥ T"_s, u"⌥ T"_s);
    EXPECT_THAT(markedSuggestions(), ElementsAre(u"⌥ T"_s, u"⌘ ⇧ S"_s));

    // Escape ends it wherever the layout has it, and with whatever else is held.
    for (const auto& [position, modifiers] :
        {std::pair(capsLock, Qt::NoModifier), std::pair(KeyCode::escape, Qt::AltModifier)}) {
        click(u"Đổi"_s);
        EXPECT_TRUE(typeKey(position, modifiers, Qt::Key_Escape, {})) << "it would close the popover as well";
        EXPECT_FALSE(isWaiting());
    }
    EXPECT_EQ(setting(u"hotkey_display"_s), u"⌥ T");
}

TEST_F(SettingsPanelOnStage, a_hint_stands_by_the_one_shortcut_that_is_recorded_and_goes_with_the_panel) {
    EXPECT_THAT(texts(), testing::Not(Contains(QString()))) << "room for a fault that is none";
    const QString hint = u"Hãy bấm tổ hợp phím mới (có ⌥, ⌘ hoặc ⌃). Bấm Esc để hủy."_s;
    const QString captureTitle = u"Chụp màn hình & Tralio (OCR)"_s;
    click(u"Đổi"_s);
    EXPECT_GT(topOf(hint), 0);
    EXPECT_LT(topOf(hint), topOf(captureTitle));
    click(u"Đang chờ..."_s);
    EXPECT_FALSE(hasControl(u"Đang chờ..."_s));
    click(u"Đổi"_s, u"Đổi"_s);
    EXPECT_TRUE(eventually([&] { return topOf(hint) > topOf(captureTitle); }));
    EXPECT_EQ(controls(u"Đang chờ..."_s).size(), 1) << "one at a time";
    typeKey(KeyCode::d, Qt::ControlModifier, Qt::Key_D, {});
    EXPECT_EQ(setting(u"ocr_hotkey_display"_s), u"⌃ D");
    EXPECT_NE(setting(u"hotkey_display"_s), u"⌃ D");
    click(u"Đổi"_s);
    window().hide();
    typeKey(KeyCode::d, Qt::AltModifier, Qt::Key_D, u"d"_s);
    EXPECT_NE(setting(u"hotkey_display"_s), u"⌥ D");
}

TEST_F(SettingsPanelOnStage, the_key_is_masked_until_the_user_looks_at_it) {
    QLineEdit* key = field(u"API Key"_s);
    const auto isLegible = [&] { return key->displayText().contains(u"secret"); };
    EXPECT_FALSE(isLegible());
    click(u"Hiện API Key"_s);
    EXPECT_TRUE(isLegible());
    key->end(false);
    QTest::keyClicks(key, u" 1"_s);
    click(u"Ẩn API Key"_s);
    EXPECT_FALSE(isLegible());
    EXPECT_EQ(setting(u"api_key"_s), u"sk-secret 1");
    key->setFocus();
    pressUndo();
    QContextMenuEvent ask(QContextMenuEvent::Mouse, QPoint(5, 5), QPoint());
    QApplication::sendEvent(key, &ask);
    press(Qt::Key_Home, Qt::Key_Return);
    EXPECT_EQ(key->text(), u"sk-secret 1");
    key->undo();  // or whatever else edits without saying so
    EXPECT_EQ(key->text(), setting(u"api_key"_s));
}

TEST_F(SettingsPanelOnStage, what_is_pasted_is_read_as_far_as_it_is_accepted_and_not_by_the_toolkit) {
    QGuiApplication::clipboard()->setText(u"all of it"_s);
    QLineEdit* model = field(u"Tên Model"_s);
    auto* prompt = visibleParts<QTextEdit>(window()).front();
    const auto pasteByMenu = [&] {
        QContextMenuEvent ask(QContextMenuEvent::Mouse, QPoint(5, 5), QPoint());
        QApplication::sendEvent(model, &ask);
        click(u"Dán"_s);
    };
    const std::pair<QString, std::function<void()>> ways[] = {
        {u"copied"_s, [&] { QTest::keyClick(model, Qt::Key_V, Qt::ControlModifier); }},
        {u"copied"_s, [&] { QTest::keyClick(model, Qt::Key_Insert, Qt::ShiftModifier); }},
        {u"copied"_s, pasteByMenu}, {u"selected"_s, [&] { QTest::mouseClick(model, Qt::MiddleButton); }},
        {u"copied"_s, [&] { QTest::keyClick(prompt, Qt::Key_V, Qt::ControlModifier); }}};
    for (const auto& [expected, paste] : ways) {
        for (const bool isTooLong : {false, true}) {
            desktop.pasteboard.copy(isTooLong ? QString(longestText + 1, u'a') : u"copied"_s);
            desktop.pasteboard.selected = isTooLong ? std::optional<QString>() : u"selected"_s;
            model->setText({});
            prompt->clear();
            paste();
            EXPECT_EQ(model->text() + prompt->toPlainText(), isTooLong ? QString() : expected)
                << &paste - &ways[0].second;
        }
    }
}

TEST_F(SettingsPanelOnStage,
    fields_are_written_through_as_a_word_is_composed_and_follow_the_settings_without_moving_the_caret) {
    QLineEdit* name = field(u"Tên Model"_s);
    name->setFocus(Qt::MouseFocusReason);
    const size_t writes = store.writes.size();
    QInputMethodEvent nothing;
    QApplication::sendEvent(name, &nothing);
    EXPECT_EQ(store.writes.size(), writes) << "an event in which nothing happens";
    name->selectAll();
    QInputMethodEvent composition(u"mội"_s, {});
    QApplication::sendEvent(name, &composition);
    settle();
    EXPECT_EQ(setting(u"model"_s), u"mội"_s) << "before it is confirmed";
    EXPECT_EQ(name->text(), QString()) << "which goes on";
    type(u"mội"_s);
    name->setCursorPosition(1);
    QTest::keyClicks(name, u"xy"_s);
    settle();
    EXPECT_EQ(setting(u"model"_s), u"mxyội"_s);
    EXPECT_EQ(name->cursorPosition(), 3);
    const ProviderPreset& another = ProviderPreset::presets()[4];
    QTest::mouseClick(find<MenuButton>(), Qt::LeftButton);
    click(another.name);
    EXPECT_EQ(name->text(), another.defaultModel);
    EXPECT_EQ(name->cursorPosition(), 3);

    auto* prompt = visibleParts<QTextEdit>(window()).front();
    EXPECT_EQ(prompt->textCursor().position(), 0);
    prompt->setFocus();
    QTest::keyClicks(prompt, u"A"_s);
    QTest::keyClick(prompt, Qt::Key_Return);
    QTest::keyClick(prompt, Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_EQ(setting(u"custom_prompt"_s), u"A\n\n"_s + AppSettings::defaultPrompt);
    click(u"Mặc định"_s);
    EXPECT_EQ(setting(u"custom_prompt"_s), AppSettings::defaultPrompt);
    EXPECT_EQ(prompt->toPlainText(), AppSettings::defaultPrompt);

    auto* paste = find<Switch>();
    const auto isKnob = [paste](int x) {
        return pictureOf(*paste).pixelColor(x, 12) == color(ColorRole::onFill);
    };
    EXPECT_TRUE(isKnob(7) && isKnob(17) && !paste->isChecked());
    QTest::mouseClick(paste, Qt::LeftButton);
    EXPECT_TRUE(isKnob(18) && isKnob(28));
    EXPECT_EQ(store.boolean(u"app_setting_auto_paste"_s), true);
    const QString fromNextStart = u"Có hiệu lực từ lần mở Tralio sau."_s;
    EXPECT_TRUE(eventually([&] { return texts().contains(fromNextStart); })) << "the shell has its own";
    click(u"Tralio"_s, u"Cài đặt"_s);
    EXPECT_THAT(texts(), Contains(fromNextStart));
    QTest::mouseClick(find<Switch>(), Qt::LeftButton);
    EXPECT_TRUE(eventually([&] { return !texts().contains(fromNextStart); }));
}

TEST_F(StageTest, every_control_of_the_settings_asks_for_what_it_says) {
    openAt(u"Cài đặt"_s, u"Mở cẩm nang ↗"_s, u"⌥ T"_s);
    EXPECT_EQ(opened, QList{QUrl(u"https://%1/guide.html"_s.arg(hosts::website))});
    EXPECT_EQ(desktop.hotKeys.registrations().back().combination.key, KeyCode::t);
    click(u"⌥ C"_s);
    EXPECT_EQ(desktop.hotKeys.registrations().back().combination.key, KeyCode::c);
    EXPECT_TRUE(hasControl(u"Bôi đen: ⌥ T"_s) && hasControl(u"Chụp: ⌥ C"_s)) << "the footer shows others";

    EXPECT_THAT(texts(), Contains(AppSettings::defaultModel));
    const auto showsFields = [this] { return !visibleParts<QLineEdit>(window()).isEmpty(); };
    EXPECT_FALSE(showsFields()) << "of the maker's own provider";
    click(u"Kiểm tra kết nối"_s);
    EXPECT_FALSE(controls(u"Đang kiểm tra..."_s).constFirst()->isEnabled());
    wait([this] { return hasControl(u"Kiểm tra kết nối"_s); });
    const QString success = u"Kết nối thành công tới model '%1'!"_s.arg(AppSettings::defaultModel);
    EXPECT_THAT(texts(), Contains(success));
    EXPECT_EQ(model.requests().size(), 1);
    QTest::mouseClick(find<MenuButton>(), Qt::LeftButton);
    click(u"OpenAI"_s);
    EXPECT_EQ(setting(u"preset_id"_s), u"openai"_s);
    EXPECT_THAT(texts(), testing::Not(Contains(success))) << "told of another endpoint";
    EXPECT_EQ(find<MenuButton>()->title(), u"OpenAI"_s);
    EXPECT_TRUE(showsFields() && hasControl(u"Kiểm tra"_s) && !hasControl(u"Kiểm tra kết nối"_s));

    desktop.permissions.screenCapture = false;
    click(u"Tralio"_s, u"Cài đặt"_s);
    EXPECT_TRUE(hasControl(u"Cần cấp quyền Ghi màn hình (Screen Recording): Cấp quyền"_s)) << "at once";

    click(u"Kiểm tra cập nhật"_s);
    EXPECT_TRUE(updates.statusMessage().has_value());
    click(u"Khôi phục mặc định"_s);
    EXPECT_EQ(setting(u"preset_id"_s), u"kavo"_s);
    focus(u"Xem giới thiệu"_s, Qt::Key_Space);
    click(u"Bỏ qua"_s);
    EXPECT_EQ(focusedTitle(), u"Xem giới thiệu"_s) << "the walk-through keeps the keyboard";
}

TEST_F(StageTest, the_endpoint_of_the_users_own_is_tested_as_it_is_written) {
    useOwnEndpoint();
    model.replies(StandInReply::error(400, u"No such model"_s));
    openAt(u"Cài đặt"_s, u"Kiểm tra"_s);
    EXPECT_TRUE(model.requests().isEmpty()) << "the key would go unencrypted to another machine";
    click(u"Vẫn gửi"_s);
    EXPECT_FALSE(hasControl(u"Vẫn gửi"_s)) << "asked once";
    click(u"Kiểm tra"_s);
    wait([this] { return !controls(u"Kiểm tra"_s).constFirst()->isBusy(); });
    ASSERT_EQ(model.requests().size(), 1);
    EXPECT_EQ(model.requests().last().header("Authorization"), "Bearer sk-own");
    EXPECT_THAT(texts().filter(u"No such model"_s), SizeIs(1));
    const auto greenOf = [this](const QString& said) {  // over red
        const QImage picture =
            pictureOf(*part<Label>([&](const Label& label) { return label.text().contains(said); }));
        int more = 0;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                more += picture.pixelColor(x, y).green() - picture.pixelColor(x, y).red();
        return more;
    };
    EXPECT_LT(greenOf(u"No such model"_s), 0);
    const QString works = u"Kết nối thành công"_s;
    model.translatesTo(u"Xin chào"_s);
    click(u"Kiểm tra"_s);
    wait([&] { return !texts().filter(works).isEmpty(); });
    EXPECT_GT(greenOf(works), 0);
    model.replies(StandInReply::error(400, u"No such model"_s));
    click(u"Kiểm tra"_s);
    wait([&] { return !texts().filter(u"No such model"_s).isEmpty(); });
    click(u"Khôi phục mặc định"_s);
    EXPECT_THAT(texts().filter(u"No such model"_s), IsEmpty());
}

}  // namespace
}  // namespace tralio
