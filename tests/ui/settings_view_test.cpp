#include "ui/settings/settings_view.h"

#include <QLineEdit>
#include <QScrollArea>
#include <QTest>
#include <QTextEdit>
#include <QWindow>

#include "settings_panel_support.h"
#include "ui/kit/button.h"
#include "ui/kit/label.h"
#include "ui/kit/menu_button.h"
#include "ui/kit/switch.h"
#include "widget_support.h"

namespace tralio {
namespace {

class SettingsViewTest : public SettingsPanel {
protected:
    SettingsViewTest() {
        settings.applyPreset(ProviderPreset::presets()[3]);
        settings.apiKey = u"sk-secret"_s;
        window.resize(530, 500);
        (new SettingsView(*panel, &window))->resize(window.size());
        showActive(window);
    }

    [[nodiscard]] Control* button(const QString& name) const { return visibleControl(window, name); }
    [[nodiscard]] Label* label(const QString& text) const {
        for (Label* label : visibleParts<Label>(window))
            if (label->text() == text)
                return label;
        return nullptr;
    }
    [[nodiscard]] QLineEdit* field(const QString& name) const {
        for (QLineEdit* field : visibleParts<QLineEdit>(window))
            if (field->accessibleName() == name)
                return field;
        return nullptr;
    }
    void click(QWidget* widget) {
        ASSERT_NE(widget, nullptr);
        QTest::mouseClick(widget, Qt::LeftButton);
        settle();
    }
    /// As the window system delivers a key: to the window, which hands it on to what has the focus.
    void typeKey(quint16 position, Qt::KeyboardModifiers modifiers, int key, const QString& text) {
        press(window.windowHandle(), position, modifiers, key, text);
        settle();
    }
    [[nodiscard]] QStringList markedSuggestions() const {
        QStringList titles;
        for (const Button* suggestion : visibleParts<Button>(window))
            if (suggestion->isChecked())
                titles += suggestion->title();
        return titles;
    }
    [[nodiscard]] static bool takesInputMethods(QWidget* widget) {
        QInputMethodQueryEvent query(Qt::ImEnabled);
        QCoreApplication::sendEvent(widget, &query);
        return query.value(Qt::ImEnabled).toBool();
    }
    [[nodiscard]] int topOf(const QWidget* widget) const { return widget->mapTo(&window, QPoint()).y(); }

    QWidget window;
};

TEST_F(SettingsViewTest, a_shortcut_is_recorded_while_the_user_may_go_on_typing_in_a_field) {
    QLineEdit* writtenIn = field(u"Tên Model"_s);
    writtenIn->setFocus();
    writtenIn->end(false);
    click(button(u"Đổi"_s));
    EXPECT_TRUE(writtenIn->hasFocus());
    EXPECT_FALSE(takesInputMethods(writtenIn)) << "one would take an accent with its modifiers first";
    typeKey(keyD, {}, Qt::Key_D, u"d"_s);
    typeKey(keyD, Qt::ShiftModifier, Qt::Key_D, u"D"_s);
    typeKey(keyD, Qt::AltModifier, Qt::Key_D, u"d"_s);
    EXPECT_EQ(settings.model(), u"gpt-4o-minidD");
    EXPECT_EQ(settings.hotKeyDisplay(), u"⌥ D");
    EXPECT_EQ(button(u"Đang chờ..."_s), nullptr);
    EXPECT_TRUE(takesInputMethods(writtenIn));
    EXPECT_EQ(markedSuggestions(), QStringList({u"⌥ D"_s, u"⌘ ⇧ S"_s}));

    click(button(u"Đổi"_s));
    typeKey(keyS, Qt::ControlModifier, Qt::Key_S, {});
    EXPECT_EQ(markedSuggestions(), QStringList{u"⌘ ⇧ S"_s}) << "no suggestion has what was recorded";
    click(button(u"⌥ T"_s));
    click(button(u"⌥ T"_s));
    EXPECT_EQ(markedSuggestions(), QStringList({u"⌥ T"_s, u"⌘ ⇧ S"_s}));
}

TEST_F(SettingsViewTest, a_hint_stands_by_the_shortcut_that_is_recorded_and_goes_with_the_panel) {
    const QString hint = u"Hãy bấm tổ hợp phím mới (có ⌥, ⌘ hoặc ⌃). Bấm Esc để hủy."_s;
    const QString captureTitle = u"Chụp màn hình & Tralio (OCR)"_s;
    click(button(u"Đổi"_s));
    ASSERT_NE(label(hint), nullptr);
    EXPECT_LT(topOf(label(hint)), topOf(label(captureTitle)));
    click(button(u"Đổi"_s));
    EXPECT_EQ(panel->recordingTarget(), HotKeyRecordTarget::screenOCR);
    EXPECT_TRUE(eventually([&] { return label(hint) && topOf(label(hint)) > topOf(label(captureTitle)); }));
    window.hide();
    EXPECT_EQ(panel->recordingTarget(), std::nullopt);
}

TEST_F(SettingsViewTest, the_makers_own_provider_shows_a_card_in_place_of_the_fields) {
    EXPECT_EQ(visibleParts<MenuButton>(window).front()->title(), u"OpenAI");
    EXPECT_NE(button(u"Kiểm tra"_s), nullptr);
    panel->chooseProvider(u"kavo"_s);
    settle();
    EXPECT_NE(label(settings.model()), nullptr);
    EXPECT_TRUE(visibleParts<QLineEdit>(window).isEmpty());
    EXPECT_EQ(button(u"Kiểm tra"_s), nullptr);

    panel->isTesting = true;
    settle();
    ASSERT_NE(button(u"Đang kiểm tra..."_s), nullptr);
    EXPECT_FALSE(button(u"Đang kiểm tra..."_s)->isEnabled());
}

TEST_F(SettingsViewTest, the_key_is_masked_until_the_user_looks_at_it) {
    QLineEdit* key = field(u"API Key"_s);
    const auto isLegible = [&] { return key->displayText().contains(u"secret"); };
    EXPECT_FALSE(isLegible());
    click(button(u"Hiện API Key"_s));
    EXPECT_TRUE(isLegible());
    key->end(false);
    QTest::keyClicks(key, u" 1"_s);
    click(button(u"Ẩn API Key"_s));
    EXPECT_FALSE(isLegible());
    EXPECT_EQ(settings.apiKey(), u"sk-secret 1");
}

TEST_F(SettingsViewTest, a_field_follows_the_settings_without_moving_the_caret) {
    QLineEdit* name = field(u"Tên Model"_s);
    name->setFocus();
    name->setCursorPosition(3);
    QTest::keyClicks(name, u"xy"_s);
    settle();
    EXPECT_EQ(settings.model(), u"gptxy-4o-mini");
    EXPECT_EQ(name->cursorPosition(), 5);
    settings.model = u"another-model"_s;
    settle();
    EXPECT_EQ(name->text(), u"another-model");
    EXPECT_EQ(name->cursorPosition(), 5);
}

TEST_F(SettingsViewTest, the_prompt_and_the_switch_are_written_through_and_brought_back) {
    auto* prompt = visibleParts<QTextEdit>(window).front();
    EXPECT_EQ(prompt->textCursor().position(), 0);
    prompt->setFocus();
    QTest::keyClicks(prompt, u"A"_s);
    QTest::keyClick(prompt, Qt::Key_Return);
    QTest::keyClick(prompt, Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_EQ(settings.customPrompt(), u"A\n\n"_s + AppSettings::defaultPrompt);
    settle();
    EXPECT_EQ(prompt->textCursor().position(), 3);
    click(button(u"Mặc định"_s));
    EXPECT_EQ(settings.customPrompt(), AppSettings::defaultPrompt);
    EXPECT_EQ(prompt->toPlainText(), AppSettings::defaultPrompt);

    auto* pastes = visibleParts<Switch>(window).front();
    click(pastes);
    EXPECT_FALSE(settings.autoPaste());
    settings.autoPaste = true;
    settle();
    EXPECT_TRUE(pastes->isChecked());
}

TEST_F(SettingsViewTest, the_keyboard_goes_through_the_panel_from_top_to_bottom_and_into_sight) {
    button(u"Khôi phục mặc định"_s)->setFocus(Qt::TabFocusReason);
    const auto* area = window.findChild<QScrollArea*>();
    QSet<QWidget*> visited;
    int previous = -1;
    for (QWidget* focus = QApplication::focusWidget(); !visited.contains(focus);
         focus = QApplication::focusWidget()) {
        visited.insert(focus);
        const QRect place(focus->mapTo(area->widget(), QPoint()), focus->size());
        EXPECT_GE(place.bottom(), previous) << focus->accessibleName().toStdString();
        EXPECT_FALSE(focus->visibleRegion().isEmpty()) << focus->accessibleName().toStdString();
        previous = place.top();
        QTest::keyClick(focus, Qt::Key_Tab);
    }
    for (const QString& last : {u"Kiểm tra cập nhật"_s, u"Mặc định"_s, u"Kiểm tra"_s})
        EXPECT_TRUE(visited.contains(button(last))) << last.toStdString();
}

TEST_F(SettingsViewTest, the_update_row_shows_one_thing_to_do_or_wait_for) {
    EXPECT_NE(button(u"Kiểm tra cập nhật"_s), nullptr);
    updates.updateInfo = AppUpdateInfo{u"1.1.0"_s, u"Nhanh hơn."_s, {}, {}};
    updates.isUpdateAvailable = true;
    updates.statusMessage = u"Đã có"_s;
    settle();
    EXPECT_NE(label(u"Đã có"_s), nullptr);
    EXPECT_NE(label(u"Nhanh hơn."_s), nullptr);
    EXPECT_NE(button(u"Cập nhật ngay"_s), nullptr);
    EXPECT_EQ(button(u"Kiểm tra cập nhật"_s), nullptr);

    updates.updateInfo = AppUpdateInfo{u"1.1.0"_s, u"Chương "_s.repeated(500'000), {}, {}};
    settle();
    EXPECT_LT(window.findChild<QScrollArea*>()->widget()->height(), 5000) << "a server may send a book";

    updates.isUpdating = true;
    updates.downloadProgress = 0.427;
    settle();
    EXPECT_NE(label(u"42%"_s), nullptr);
    EXPECT_EQ(button(u"Cập nhật ngay"_s), nullptr);
    updates.isChecking = true;
    settle();
    EXPECT_EQ(label(u"42%"_s), nullptr);
}

}  // namespace
}  // namespace tralio
