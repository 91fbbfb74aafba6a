#include "ui/kit/accessibility.h"

#include <QAccessibleActionInterface>

#include "ui/history/history_row.h"
#include "ui/kit/badge.h"
#include "ui/kit/switch.h"
#include "ui/settings/settings_view.h"
#include "ui/stage_test.h"

namespace tralio {
namespace {

using testing::Not;

/// Every object on the way, the unseen ones and what is below them left out.
void walk(QAccessibleInterface& object, const auto& visit) {
    if (object.state().invisible)
        return;
    visit(object);
    for (int i = 0; i < object.childCount(); ++i)
        walk(*object.child(i), visit);
}

/// The program through a screen reader.
class AccessibleProgram : public StageTest {
protected:
    [[nodiscard]] static QAccessibleInterface& accessible(QWidget& widget) {
        return *QAccessible::queryAccessibleInterface(&widget);
    }
    /// The actions beside taking the focus.
    [[nodiscard]] static QStringList actions(QWidget& widget) {
        QStringList names = accessible(widget).actionInterface()->actionNames();
        names.removeAll(QAccessibleActionInterface::setFocusAction());
        return names;
    }
    void activate(QWidget* control) {
        ASSERT_NE(control, nullptr);
        accessible(*control).actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        settle();
    }
    void activate(const QString& name) { activate(controls(name).value(0)); }
    /// What a screen reader reads out by itself when it comes into sight.
    [[nodiscard]] QStringList news() {
        QStringList news;
        walk(accessible(window()), [&news](QAccessibleInterface& object) {
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
    /// Goes by Tab or Shift+Tab from the tabs on and around; the number of stops.
    int walkBy(Qt::Key key) {
        const bool isForward = key == Qt::Key_Tab;
        QWidget* const start = controls(u"Tralio"_s).constFirst();
        start->setFocus(Qt::TabFocusReason);
        int stops = 0;
        for (QWidget* before = start; stops < 100; ++stops) {
            press(key);
            QWidget* here = QApplication::focusWidget();
            if (here == start || (stops > 0 && here->parentWidget() == start->parentWidget()))
                break;
            const bool isFromTopToBottom = !isForward && stops == 0;
            EXPECT_TRUE(
                isFromTopToBottom || isReadAfter(isForward ? *here : *before, isForward ? *before : *here))
                << qPrintable(spokenName(*here)) << " from " << qPrintable(spokenName(*before));
            const auto* row = qobject_cast<HistoryRow*>(here->parentWidget());
            EXPECT_TRUE(
                row == nullptr ? !here->visibleRegion().isEmpty() : row->visibleRegion() == row->rect())
                << qPrintable(spokenName(*here)) << " is out of sight";
            before = here;
        }
        return stops;
    }
};

TEST_F(AccessibleProgram, has_a_name_for_whatever_can_be_used_and_tab_goes_by_it_as_it_is_read) {
    desktop.permissions.accessibility = false;  // the footer warns, and the settings ask
    useOwnEndpoint();
    const QStringList history = u"good night,a,b,c,d,e,f,"_s.append(u"long "_s.repeated(90)).split(u',');
    fillHistory(history);
    open();
    for (const QString& tab : {u"Tralio"_s, u"Lịch sử"_s, u"Cài đặt"_s, u"Tác giả"_s}) {
        click(tab);
        walk(accessible(window()), [&](QAccessibleInterface& object) {
            const QAccessible::Role role = object.role();
            const bool isUsed = object.state().focusable ||
                (object.actionInterface() != nullptr && qobject_cast<Control*>(object.object()) != nullptr);
            if (isUsed && role != QAccessible::Client)
                EXPECT_NE(object.text(QAccessible::Name), QString())
                    << object.object()->metaObject()->className() << " in " << qPrintable(tab);
            EXPECT_NE(role, QAccessible::Graphic) << "a picture without a name is nothing to be told of";
        });
        if (tab == u"Lịch sử") {
            ASSERT_THAT(controls(u"Xóa"_s), SizeIs(history.size()));
            EXPECT_EQ(
                accessible(*controls(u"Xóa"_s).constFirst()).text(QAccessible::Description), u"good night"_s);
            click(u"Xóa"_s, u"Hoàn tác"_s);  // a row that was made last, and stands first
        }
        if (tab == u"Cài đặt") {
            const QString words = u"Super + Shift + D"_s;
            auto* shortcut = part<Badge>([&](const Badge& badge) { return badge.accessibleName() == words; });
            ASSERT_NE(shortcut, nullptr);
            EXPECT_EQ(accessible(*shortcut).role(), QAccessible::StaticText);
            EXPECT_EQ(shortcut->toolTip(), words);
            EXPECT_EQ(controls(u"⌥ T"_s).constFirst()->toolTip(), u"Alt + T"_s);
        }
        for (const Qt::Key key : {Qt::Key_Backtab, Qt::Key_Tab})
            EXPECT_GT(walkBy(key), 4) << qPrintable(tab) << " by " << key;
    }
}

TEST_F(AccessibleProgram, is_pressed_as_it_is_clicked) {
    open();
    holdReplies();
    type(u"slow"_s);
    activate(u"Tralio (↵ Enter)"_s);
    Control* busy = controls(u"Đang dịch bằng AI..."_s).constFirst();
    EXPECT_TRUE(accessible(*busy).state().busy);
    EXPECT_THAT(actions(*busy), IsEmpty());

    activate(u"Cài đặt"_s);
    activate(u"⌥ T"_s);
    EXPECT_EQ(setting(u"hotkey_display"_s), u"⌥ T"_s);
    EXPECT_THAT(actions(*controls(u"Bôi đen: ⌥ T"_s).value(0)), IsEmpty()) << "a green one does nothing";
    const auto autoPaste = [this] { return accessible(*find<Switch>()).state(); };
    EXPECT_TRUE(autoPaste().checkable && autoPaste().checked);
    activate(u"Tự động dịch khi mở từ Clipboard"_s);
    EXPECT_FALSE(autoPaste().checked);

    Control* provider = find<MenuButton>();
    EXPECT_EQ(accessible(*provider).role(), QAccessible::ButtonMenu);
    EXPECT_FALSE(accessible(*provider).state().expanded);
    activate(provider);
    EXPECT_TRUE(accessible(*provider).state().expanded);
    activate(u"OpenAI"_s);
    EXPECT_EQ(setting(u"preset_id"_s), u"openai"_s);
    EXPECT_FALSE(accessible(*provider).state().expanded);
}

TEST_F(AccessibleProgram, tells_what_comes_without_the_keyboard_and_nothing_that_stands_there_always) {
    open();
    EXPECT_THAT(news(), IsEmpty());
    translate(u"done"_s);
    EXPECT_THAT(news(), ElementsAre(u"Bản dịch:"_s));
    window().hide();
    window().show();
    EXPECT_THAT(news(), IsEmpty()) << "told again at every opening";
    press(Qt::Key_Return);
    wait([this] { return model.requests().size() == 2 && !news().isEmpty(); });
    EXPECT_THAT(news(), ElementsAre(u"Bản dịch:"_s)) << "also the same once more";

    model.replies(StandInReply::error(500, u"quá tải"_s));
    press(Qt::Key_Return);
    wait([this] { return showsError(); });
    EXPECT_THAT(news(), Contains(u"Lỗi máy chủ (500): quá tải"_s));
    appState.notice = u"Không có chữ nào đang được chọn"_s;
    settle();
    EXPECT_THAT(news(), Contains(u"Không có chữ nào đang được chọn"_s));
    appState.notice = QString();
    settle();
    EXPECT_THAT(news(), Not(Contains(u"4 ký tự"_s)));

    click(u"Cài đặt"_s);
    EXPECT_THAT(news(), IsEmpty());
    click(u"Kiểm tra kết nối"_s);
    wait([this] { return hasControl(u"Kiểm tra kết nối"_s); });
    click(u"Tralio văn bản bôi đen: Đổi"_s);
    EXPECT_THAT(news(), SizeIs(2)) << "the test's result, and how to record";

    typeKey(KeyCode::d, Qt::AltModifier, Qt::Key_D, u"d"_s);
    EXPECT_THAT(news(), Contains(u"Alt + D"_s)) << "what was recorded";

    useOwnEndpoint();
    openAt(u"Cài đặt"_s);
    for (int test = 0; test < 2; ++test) {
        click(u"Kiểm tra"_s);
        EXPECT_THAT(news().filter(u"API Key chưa được gửi đi"_s), SizeIs(1)) << test;
        find<SettingsView>()->hide();
        find<SettingsView>()->show();
    }
    const QString undone = u"Đã hoàn tác"_s;
    click(u"Khôi phục mặc định"_s, u"Hoàn tác"_s);
    EXPECT_THAT(news(), Contains(undone));
    EXPECT_THAT(texts(), Not(Contains(undone))) << "which everybody else sees";
    click(u"Khôi phục mặc định"_s);
    EXPECT_THAT(news(), ElementsAre(u"Đã khôi phục cài đặt mặc định"_s));
}

TEST_F(StageTest, the_keyboard_keeps_its_place_when_what_has_it_is_busy_or_gone) {
    store.setValue(u"app_setting_preset_id"_s, u"custom"_s);
    model.replies(StandInReply::error(401, u"no"_s).delivered(StandInReply::Delivery::held));
    desktop.permissions.accessibility = false;
    desktop.permissions.grantOnRequest = true;
    openAt(u"Cài đặt"_s);

    focus(u"Kiểm tra"_s, Qt::Key_Space, Qt::Key_Space);  // the impatient second one
    EXPECT_NE(store.boolean(u"app_setting_auto_paste"_s), false);
    waitForRequests(1);
    model.sendTheRest();
    wait([this] { return !controls(u"Kiểm tra"_s).constFirst()->isBusy(); });
    EXPECT_EQ(focusedTitle(), u"Kiểm tra"_s);
    EXPECT_TRUE(showsFocusRing());

    focus(u"Kiểm tra cập nhật"_s, Qt::Key_Space);
    EXPECT_EQ(focusedTitle(), QString());
    waitForRequests(2);
    model.sendTheRest();
    wait([this] { return !updates.isChecking(); });
    EXPECT_EQ(focusedTitle(), u"Kiểm tra cập nhật"_s);
    model.replies(
        StandInReply::withBody(200, AppUpdateInfo{u"99"_s, {}, u"https://a.example"_s, {}}.toJson()));
    press(Qt::Key_Space);
    wait([this] { return hasControl(u"Cập nhật ngay"_s); });
    EXPECT_EQ(focusedTitle(), QString()) << "once more would install what was only looked for";

    focus(u"Cần cấp quyền Trợ năng (Accessibility): Cấp quyền"_s);
    desktop.permissions.screenCapture = false;
    pass(1s);
    EXPECT_EQ(focusedTitle(), u"Cấp quyền"_s) << "the other one is missing as well";
    desktop.permissions.screenCapture = true;
    press(Qt::Key_Space);
    pass(1s);
    EXPECT_TRUE(desktop.workspace.opened.empty()) << "granted at once";
    EXPECT_THAT(texts(),
        testing::IsSupersetOf(
            {u"Quyền Trợ năng (Accessibility): Đã bật"_s, u"Quyền Ghi màn hình (OCR): Đã bật"_s}));
    EXPECT_EQ(focusedTitle(), QString()) << "the keyboard went on to something that the user does not expect";
    press(Qt::Key_Tab);
    EXPECT_EQ(focusedTitle(), u"Cập nhật ngay"_s);
}

}  // namespace
}  // namespace tralio
