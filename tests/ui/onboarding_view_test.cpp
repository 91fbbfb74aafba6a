#include "ui/onboarding/onboarding_view.h"

#include "hotkeys/permission_watch.h"
#include "ui/kit/badge.h"
#include "ui/onboarding/onboarding_state.h"
#include "ui/onboarding/page_indicator.h"
#include "ui/onboarding/permission_step.h"
#include "ui/stage_test.h"

namespace tralio {
namespace {

const QString skip = u"Bỏ qua"_s;
const QString back = u"Quay lại"_s;
const QString next = u"Tiếp tục"_s;
const QString finish = u"Bắt đầu sử dụng"_s;

/// The walk-through over the whole window, as at the first start.
class WalkThrough : public StageTest {
protected:
    WalkThrough() { store.setValue(u"hasCompletedOnboarding"_s, false); }

    [[nodiscard]] QStringList titles() const {
        QStringList titles;
        for (const Button* button : visibleParts<Button>(*find<OnboardingView>()))
            titles << button->title();
        return titles;
    }

    PermissionWatch permissions{hotKeys, desktop.clock};
};

TEST_F(WalkThrough, every_page_has_the_ways_on_that_it_needs_and_return_alone_leads_through_it) {
    const auto spokenPage = [this] { return spokenName(*find<PageIndicator>()); };
    settings.updateCustomHotKey(17, 2048, u"⌥ T"_s);
    open();
    EXPECT_THAT(titles(), ElementsAre(skip, next));
    EXPECT_TRUE(spokenPage().contains(u"1"_s)) << qPrintable(spokenPage());
    EXPECT_EQ(focusedTitle(), next);
    press(Qt::Key_Return);
    EXPECT_THAT(titles(), testing::IsSupersetOf({skip, back, next}));
    press(Qt::Key_Return);
    EXPECT_THAT(titles(), ElementsAre(skip, back, next));
    press(Qt::Key_Return);
    EXPECT_THAT(titles(), ElementsAre(back, finish));
    EXPECT_FALSE(spokenPage().contains(u"1"_s)) << qPrintable(spokenPage());
    EXPECT_FALSE(showsFocusRing());
    EXPECT_THAT(texts(), Contains(u"Trên máy này: Alt + T và Super + Shift + S"_s));
    hotKeys.keys().ocrStatus = HotKeyStatus::taken;
    settle();
    EXPECT_THAT(texts(), Contains(u"Trên máy này: Alt + T và Super + Shift + S (chưa dùng được)"_s));
    click(back, back);
    focus(back, Qt::Key_Return);
    EXPECT_EQ(focusedTitle(), next) << "theirs is gone";
    EXPECT_TRUE(showsFocusRing());
    EXPECT_THAT(titles(), ElementsAre(skip, next));

    click(next, next, next);
    find<OnboardingView>()->setFocus();
    press(Qt::Key_A);
    EXPECT_TRUE(hasControl(finish));
    press(Qt::Key_Enter);
    EXPECT_FALSE(hasControl(finish)) << "also when none of its buttons has the focus";
    EXPECT_EQ(store.boolean(u"hasCompletedOnboarding"_s), true);
    appState.showOnboarding = true;
    settle();
    EXPECT_THAT(titles(), ElementsAre(skip, next)) << "from the beginning";
}

TEST_F(WalkThrough, a_permission_is_asked_for_on_its_card_until_it_is_granted) {
    refusePermissions();
    openAt(next);
    const auto cards = window().findChildren<PermissionStep*>();
    Button* request = nullptr;
    QStringList asked;
    for (const auto* card : cards) {
        request = visibleParts<Button>(*card).value(0);
        ASSERT_NE(request, nullptr);
        QTest::mouseClick(request, Qt::LeftButton);
        asked += desktop.workspace.opened.back().query();
    }
    ASSERT_THAT(asked, ElementsAre(u"Privacy_Accessibility"_s, u"Privacy_ScreenCapture"_s));

    const auto badge = [&cards](int card) { return cards[card]->findChild<Badge*>()->accessibleName(); };
    EXPECT_EQ(badge(0), u"CHƯA CẤP"_s);
    desktop.permissions.grantOnRequest = true;
    QTest::mouseClick(visibleParts<Button>(*cards[0]).value(0), Qt::LeftButton);
    pass(1s);
    EXPECT_TRUE(visibleParts<Button>(*cards[0]).isEmpty());
    EXPECT_EQ(badge(0), u"ĐÃ CẤP"_s);
    EXPECT_EQ(badge(1), u"CHƯA CẤP"_s);

    const QSignalSpy announced(&permissions, &ObservableObject::objectWillChange);
    request->setFocus(Qt::TabFocusReason);
    desktop.permissions.screenCapture = true;
    for (int second = 0; second < 3; ++second)
        pass(1s);
    EXPECT_EQ(announced.size(), 1) << "and not what stays as it is";
    EXPECT_FALSE(request->isVisible());
    EXPECT_EQ(badge(1), u"ĐÃ CẤP"_s);
    EXPECT_EQ(focusedTitle(), QString()) << "the keyboard went on to another button";

    find<OnboardingView>()->hide();
    desktop.permissions.screenCapture = false;
    find<OnboardingView>()->show();
    settle();
    EXPECT_EQ(badge(1), u"CHƯA CẤP"_s) << "what is shown is not looked up on appearing";
}

TEST_F(WalkThrough, the_keyboard_stays_within_it) {
    refusePermissions();
    openAt(next);
    focus(next);
    auto* page = visibleParts<ScrollPanel>(*find<OnboardingView>()).constFirst();
    page->widget()->setMinimumHeight(2000);  // as on a screen where it has to be scrolled
    settle();
    press(Qt::Key_PageDown);
    EXPECT_GT(page->verticalScrollBar()->value(), 0);
    QStringList round;
    for (int i = 0; i < 5; ++i) {
        press(Qt::Key_Tab);
        round << focusedTitle();
    }
    EXPECT_EQ(round.first(), skip) << "after the main button it begins again at the top";
    EXPECT_EQ(round.last(), next);
    EXPECT_EQ(QSet<QString>(round.begin(), round.end()).size(), 5);
    press(Qt::Key_Backtab);
    EXPECT_EQ(focusedTitle(), back);

    auto* below = new QLineEdit(&window());
    below->show();
    below->setFocus();
    EXPECT_EQ(focusedTitle(), next) << "what lies below gets no keys";
    click(skip);
    below->setFocus();
    EXPECT_TRUE(below->hasFocus());
}

TEST_F(WalkThrough, a_page_changes_in_a_motion_that_leaves_nothing_behind_unless_the_desktop_asks_for_none) {
    for (const bool moves : {false, true}) {
        Theme::setAppearance({.reducedMotion = !moves});
        QImage unmoved;
        for (const bool isSeen : {false, true}) {
            OnboardingState state({hotKeys, permissions, settings}, [] {});
            OnboardingView view(state);
            view.resize(530, 585);
            view.show();
            view.setVisible(isSeen);
            state.currentStep = 2;
            EXPECT_TRUE(nextTurn());
            view.show();
            if (!isSeen)
                unmoved = pictureOf(view);
            EXPECT_EQ(pictureOf(view) != unmoved, isSeen && moves) << "it begins with what was there";
            EXPECT_TRUE(eventually([&] { return pictureOf(view) == unmoved; }));
        }
    }
}

}  // namespace
}  // namespace tralio
