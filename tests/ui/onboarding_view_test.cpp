#include "ui/onboarding/onboarding_view.h"

#include <QLineEdit>

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

    void openAt(int step) {
        open();
        for (; step > 0; --step)
            click(next);
    }
    [[nodiscard]] QStringList titles() const {
        QStringList titles;
        for (const Button* button : visibleParts<Button>(*find<OnboardingView>()))
            titles << button->title();
        return titles;
    }
    [[nodiscard]] static bool showsRing() {
        return qobject_cast<Button*>(QApplication::focusWidget())->showsFocusRing();
    }

    PermissionWatch permissions{hotKeys, desktop.clock};
};

TEST_F(WalkThrough, every_page_has_the_ways_on_that_it_needs_and_tells_screen_readers_its_number) {
    const auto spokenPage = [this] { return spokenName(*find<PageIndicator>()); };
    open();
    EXPECT_THAT(titles(), ElementsAre(skip, next));
    EXPECT_TRUE(spokenPage().contains(u"1"_s)) << qPrintable(spokenPage());
    click(next);
    EXPECT_THAT(titles(), testing::IsSupersetOf({skip, back, next}));
    click(next);
    EXPECT_THAT(titles(), ElementsAre(skip, back, next));
    click(next);
    EXPECT_THAT(titles(), ElementsAre(back, finish));
    EXPECT_FALSE(spokenPage().contains(u"1"_s)) << qPrintable(spokenPage());
    for (int i = 0; i < 3; ++i)
        click(back);
    EXPECT_THAT(titles(), ElementsAre(skip, next));
}

TEST_F(WalkThrough, a_permission_is_asked_for_on_its_card_until_it_is_granted) {
    desktop.permissions.screenCapture = false;
    openAt(1);
    const auto cards = window().findChildren<PermissionStep*>();
    ASSERT_EQ(cards.size(), 2);
    EXPECT_TRUE(visibleParts<Button>(*cards[0]).isEmpty());
    auto* request = visibleParts<Button>(*cards[1]).value(0);
    ASSERT_NE(request, nullptr);
    QTest::mouseClick(request, Qt::LeftButton);
    ASSERT_EQ(desktop.workspace.opened.size(), 1U);
    EXPECT_TRUE(desktop.workspace.opened[0].toString().endsWith(u"Privacy_ScreenCapture"));

    const auto badge = [&cards](int card) { return cards[card]->findChild<Badge*>()->accessibleName(); };
    EXPECT_EQ(badge(0), u"ĐÃ CẤP"_s);
    EXPECT_EQ(badge(1), u"CHƯA CẤP"_s);

    request->setFocus(Qt::TabFocusReason);
    desktop.permissions.screenCapture = true;
    pass(1s);
    EXPECT_FALSE(request->isVisible());
    EXPECT_EQ(badge(1), u"ĐÃ CẤP"_s);
    EXPECT_EQ(focusedTitle(), QString()) << "the keyboard went on to another button";

    find<OnboardingView>()->hide();
    desktop.permissions.screenCapture = false;
    find<OnboardingView>()->show();
    settle();
    EXPECT_EQ(badge(1), u"CHƯA CẤP"_s) << "what is shown is not looked up on appearing";
}

TEST_F(WalkThrough, the_last_page_names_the_shortcuts_of_this_machine_as_they_are) {
    settings.updateCustomHotKey(17, 2048, u"⌥ T"_s);
    openAt(3);
    EXPECT_THAT(texts(), Contains(u"Trên máy này: Alt + T và Super + Shift + S"_s));
}

TEST_F(WalkThrough, return_alone_leads_through_it) {
    open();
    EXPECT_EQ(focusedTitle(), next);
    for (int step = 0; step < 4; ++step)
        press(Qt::Key_Return);
    EXPECT_EQ(store.boolean(u"hasCompletedOnboarding"_s), true);

    store.setValue(u"hasCompletedOnboarding"_s, false);
    openAt(3);
    find<OnboardingView>()->setFocus();
    press(Qt::Key_A);
    EXPECT_TRUE(hasControl(finish));
    press(Qt::Key_Enter);
    EXPECT_FALSE(hasControl(finish)) << "also when none of its buttons has the focus";
}

TEST_F(WalkThrough, the_keyboard_stays_within_it) {
    refusePermissions();
    openAt(1);
    focus(next);
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

TEST_F(WalkThrough, the_focus_and_its_ring_go_on_to_the_main_button_when_theirs_is_gone) {
    openAt(1);
    focus(back);
    press(Qt::Key_Return);
    EXPECT_EQ(focusedTitle(), next);
    EXPECT_TRUE(showsRing());

    openAt(2);
    press(Qt::Key_Return);
    ASSERT_EQ(focusedTitle(), finish);
    EXPECT_FALSE(showsRing());
}

TEST_F(WalkThrough, a_page_changes_in_a_motion_unless_the_desktop_asks_for_none) {
    const auto pictureOfChange = [this](bool isSeen) {
        OnboardingState state({hotKeys, permissions, settings}, [] {});
        OnboardingView view(state);
        view.resize(530, 585);
        view.show();
        view.setVisible(isSeen);
        state.currentStep = 2;
        EXPECT_TRUE(nextTurn());
        view.show();
        return pictureOf(view);
    };
    EXPECT_EQ(pictureOfChange(true), pictureOfChange(false));
    Theme::setAppearance({});
    EXPECT_NE(pictureOfChange(true), pictureOfChange(false));
}

TEST_F(WalkThrough, stays_within_its_pages_and_may_be_taken_away_by_whoever_is_told_of_its_end) {
    std::unique_ptr<OnboardingState> state;
    state = std::make_unique<OnboardingState>(
        OnboardingState::Dependencies{hotKeys, permissions, settings}, [&state] { state.reset(); });
    state->back();
    EXPECT_TRUE(state->isFirstStep());
    for (int step = 0; step < OnboardingState::totalSteps; ++step)
        state->next();
    EXPECT_TRUE(state->isLastStep());
    state->finish();
    EXPECT_EQ(state, nullptr);
}

}  // namespace
}  // namespace tralio
