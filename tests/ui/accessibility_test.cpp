#include "ui/kit/accessibility.h"

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QTest>

#include "history/translation_history_store.h"
#include "ui/kit/error_strip.h"
#include "ui/kit/switch.h"
#include "ui/kit/theme.h"
#include "ui/main/main_view.h"
#include "ui/stage.h"

namespace tralio {
namespace {

using testing::Not;

/// Every object on the way, the unseen ones and what is below them left out.
template <typename Visit>
void walk(QAccessibleInterface& object, const Visit& visit) {
    if (object.state().invisible)
        return;
    visit(object);
    for (int i = 0; i < object.childCount(); ++i)
        walk(*object.child(i), visit);
}

/// The program through a screen reader.
class AccessibleProgram : public testing::Test {
protected:
    AccessibleProgram() { Theme::setAppearance({.reducedMotion = true}); }
    ~AccessibleProgram() override { Theme::setAppearance({}); }

    [[nodiscard]] static QAccessibleInterface& accessible(QWidget& widget) {
        return *QAccessible::queryAccessibleInterface(&widget);
    }
    /// The actions beside taking the focus.
    [[nodiscard]] static QStringList actions(QWidget& widget) {
        QStringList names = accessible(widget).actionInterface()->actionNames();
        names.removeAll(QAccessibleActionInterface::setFocusAction());
        return names;
    }
    void press(const QString& name) {
        ASSERT_TRUE(stage.hasControl(name)) << qPrintable(name);
        QWidget& control = *stage.controls(name).constFirst();
        accessible(control).actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        stage.settle();
    }
    /// What a screen reader reads out by itself when it comes into sight.
    [[nodiscard]] QStringList news() {
        QStringList news;
        walk(accessible(stage.window()), [&news](QAccessibleInterface& object) {
            if (object.role() == QAccessible::AlertMessage)
                news += object.text(QAccessible::Name);
        });
        return news;
    }
    /// Whether `here` is read after `before`.
    [[nodiscard]] static bool isReadAfter(QWidget& here, QWidget& before) {
        const QRect first = accessible(before).rect();
        const QRect second = accessible(here).rect();
        const bool isBeside = second.top() < first.bottom() && second.left() >= first.left();
        return second.bottom() > first.bottom() || isBeside;
    }
    /// Goes by Tab from the tabs on and around; the number of stops.
    int walkByTab() {
        QWidget* const start = stage.controls(u"Tralio"_s).constFirst();
        start->setFocus(Qt::TabFocusReason);
        int stops = 0;
        for (QWidget* before = start; stops < 100; ++stops) {
            stage.press(Qt::Key_Tab);
            QWidget* here = QApplication::focusWidget();
            if (here == start || (stops > 0 && here->parentWidget() == start->parentWidget()))
                break;
            EXPECT_TRUE(isReadAfter(*here, *before))
                << qPrintable(nameOf(*here)) << " after " << qPrintable(nameOf(*before));
            before = here;
        }
        return stops;
    }
    [[nodiscard]] static QString nameOf(QWidget& widget) {
        return accessible(widget).text(QAccessible::Name);
    }

    Stage stage;
};

TEST_F(AccessibleProgram, has_a_name_for_whatever_can_be_used_and_tab_goes_by_it_as_it_is_read) {
    stage.desktop.permissions.accessibility = false;  // the footer warns, and the settings ask
    stage.store.setValue(u"app_setting_preset_id"_s, u"custom"_s);
    stage.store.setValue(u"app_setting_api_key"_s, u"sk-own"_s);
    TranslationHistoryStore history(stage.store);
    history.add(u"hello"_s, u"xin chào"_s, u"Tiếng Anh"_s, u"Tiếng Việt"_s, u"Chuẩn"_s);
    history.add(u"good night"_s, u"ngủ ngon"_s, u"Tiếng Anh"_s, u"Tiếng Việt"_s, u"Chuẩn"_s);
    stage.open();
    for (const QString& tab : {u"Tralio"_s, u"Lịch sử"_s, u"Cài đặt"_s, u"Tác giả"_s}) {
        stage.click(tab);
        walk(accessible(stage.window()), [&](QAccessibleInterface& object) {
            const QAccessible::Role role = object.role();
            const bool isUsed = object.state().focusable ||
                (object.actionInterface() != nullptr && qobject_cast<Control*>(object.object()) != nullptr);
            if (isUsed && role != QAccessible::Client)
                EXPECT_NE(object.text(QAccessible::Name), QString())
                    << object.object()->metaObject()->className() << " in " << qPrintable(tab);
            EXPECT_NE(role, QAccessible::Graphic) << "a picture without a name is nothing to be told of";
        });
        if (stage.hasControl(u"Xóa"_s) && stage.hasControl(u"Xóa tất cả"_s)) {
            EXPECT_EQ(accessible(*stage.controls(u"Xóa"_s).constFirst()).text(QAccessible::Description),
                u"good night"_s);
            stage.click(u"Xóa"_s);
            stage.click(u"Hoàn tác"_s);  // a row that was made last, and stands first
        }
        EXPECT_GT(walkByTab(), 4) << qPrintable(tab);
    }
}

TEST_F(AccessibleProgram, is_pressed_as_it_is_clicked) {
    stage.open();
    stage.model.replies(StandInReply::translation(u"xong"_s).delivered(StandInReply::Delivery::held));
    stage.type(u"slow"_s);
    press(u"Tralio (↵ Enter)"_s);
    Control* busy = stage.controls(u"Đang dịch bằng AI..."_s).constFirst();
    EXPECT_TRUE(accessible(*busy).state().busy);
    EXPECT_THAT(actions(*busy), IsEmpty());

    press(u"Cài đặt"_s);
    ASSERT_TRUE(stage.hasControl(u"⌥ T"_s)) << "a tab opens its panel";
    press(u"⌥ T"_s);
    EXPECT_EQ(stage.store.text(u"app_setting_hotkey_display"_s), u"⌥ T"_s);
    press(u"Tự động dịch khi mở từ Clipboard"_s);
    EXPECT_EQ(stage.store.boolean(u"app_setting_auto_paste"_s), false);
    auto* autoPaste = stage.find<Switch>();
    EXPECT_FALSE(accessible(*autoPaste).state().checked);
    EXPECT_TRUE(accessible(*autoPaste).state().checkable);

    Control* chip = stage.controls(u"Bôi đen: ⌥ T"_s).constFirst();
    EXPECT_THAT(actions(*chip), IsEmpty()) << "a green one does nothing";
    Control* provider = stage.part<Control>(
        [](const Control& control) { return control.spokenRole() == QAccessible::ButtonMenu; });
    ASSERT_NE(provider, nullptr);
    EXPECT_FALSE(accessible(*provider).state().expanded);
    accessible(*provider).actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    stage.settle();
    EXPECT_TRUE(accessible(*provider).state().expanded);
    press(u"OpenAI"_s);
    EXPECT_EQ(stage.store.text(u"app_setting_preset_id"_s), u"openai"_s);
    EXPECT_FALSE(accessible(*provider).state().expanded);
}

TEST_F(AccessibleProgram, tells_what_comes_without_the_keyboard_and_nothing_that_stands_there_always) {
    stage.open();
    EXPECT_THAT(news(), IsEmpty());
    stage.model.translatesTo(u"xong"_s);
    stage.type(u"done"_s);
    stage.press(Qt::Key_Return);
    stage.wait([this] { return stage.hasControl(u"Sao chép"_s); });
    EXPECT_THAT(news(), ElementsAre(u"Bản dịch:"_s));

    stage.model.replies(StandInReply::error(500, u"quá tải"_s));
    stage.press(Qt::Key_Return);
    stage.wait([this] { return stage.find<ErrorStrip>()->isVisible(); });
    EXPECT_THAT(news(), Contains(u"Lỗi máy chủ (500): quá tải"_s));
    stage.appState.notice = u"Không có chữ nào đang được chọn"_s;
    stage.settle();
    EXPECT_THAT(news(), Contains(u"Không có chữ nào đang được chọn"_s));
    stage.appState.notice = QString();
    stage.settle();
    EXPECT_THAT(news(), Not(Contains(u"4 ký tự"_s)));

    stage.click(u"Cài đặt"_s);
    EXPECT_THAT(news(), IsEmpty());
    stage.click(u"Kiểm tra kết nối"_s);
    stage.wait([this] { return stage.hasControl(u"Kiểm tra kết nối"_s); });
    stage.click(u"Tralio văn bản bôi đen: Đổi"_s);
    EXPECT_THAT(news(), SizeIs(2)) << "the test's result, and how to record";
}

TEST_F(AccessibleProgram, keeps_the_keyboard_from_what_is_beside_a_button_that_goes_with_its_strip) {
    stage.store.setValue(u"app_setting_preset_id"_s, u"custom"_s);
    stage.store.setValue(u"app_setting_api_key"_s, u"sk-own"_s);
    stage.store.setValue(u"app_setting_model"_s, u"qwen"_s);
    stage.open();
    const auto pressTwice = [this](const QString& name) {
        stage.press(Qt::Key_Shift);
        stage.controls(name).constFirst()->setFocus(Qt::TabFocusReason);
        stage.press(Qt::Key_Space);
        stage.press(Qt::Key_Space);
    };
    stage.type(u"text"_s);
    stage.press(Qt::Key_Return);  // refused: the key would be exposed
    ASSERT_TRUE(stage.find<ErrorStrip>()->isVisible());
    const QString error = stage.find<ErrorStrip>()->accessibleName();
    pressTwice(u"Đóng thông báo lỗi"_s);
    EXPECT_FALSE(stage.find<ErrorStrip>()->isVisible()) << qPrintable(error);

    stage.click(u"Cài đặt"_s);
    pressTwice(u"Vẫn gửi"_s);
    EXPECT_EQ(stage.store.text(u"app_setting_model"_s), u"qwen"_s);
    EXPECT_TRUE(stage.model.requests().isEmpty());
}

}  // namespace
}  // namespace tralio
