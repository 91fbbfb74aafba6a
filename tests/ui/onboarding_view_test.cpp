#include "ui/onboarding/onboarding_view.h"

#include <QAccessible>
#include <QLineEdit>
#include <QTest>

#include <memory>

#include "hotkeys/permission_watch.h"
#include "state/app_settings.h"
#include "support/event_loop.h"
#include "support/fake_desktop.h"
#include "support/memory_key_value_store.h"
#include "ui/kit/badge.h"
#include "ui/kit/button.h"
#include "ui/kit/theme.h"
#include "ui/onboarding/onboarding_state.h"
#include "ui/onboarding/page_indicator.h"
#include "ui/onboarding/permission_step.h"
#include "widget_support.h"

namespace tralio {
namespace {

const QString skip = u"Bỏ qua"_s;
const QString back = u"Quay lại"_s;
const QString next = u"Tiếp tục"_s;
const QString finish = u"Bắt đầu sử dụng"_s;

/// The walk-through over a window with an input of its own.
class WalkThroughView : public testing::Test {
protected:
    WalkThroughView() {
        window.setFixedSize(530, 585);
        Theme::setAppearance({.reducedMotion = true});
        begin();
        showActive(window);
    }
    ~WalkThroughView() override { Theme::setAppearance({}); }

    void begin() {
        view.reset();
        state = std::make_unique<OnboardingState>(
            OnboardingState::Dependencies{hotKeys, permissions, settings}, [this] { ++finishes; });
        view = std::make_unique<OnboardingView>(*state, &window);
        view->resize(window.size());
        view->show();
    }
    void goTo(int step) {
        state->currentStep = step;
        ASSERT_TRUE(nextTurn());
    }

    [[nodiscard]] QStringList visibleTitles() const {
        QStringList titles;
        for (const Button* button : visibleParts<Button>(*view))
            titles << button->title();
        return titles;
    }
    void click(const QString& title) {
        Control* button = visibleControl(*view, title);
        ASSERT_NE(button, nullptr) << title.toStdString();
        QTest::mouseClick(button, Qt::LeftButton);
        ASSERT_TRUE(nextTurn());
    }
    /// Keys go where the focus is, as the user's do.
    void press(Qt::Key key) {
        QWidget* focused = QApplication::focusWidget();
        QTest::keyClick(focused != nullptr ? focused : &window, key);
        ASSERT_TRUE(nextTurn());
    }

    FakeDesktop desktop;
    HotKeyService hotKeys{desktop.platform()};
    PermissionWatch permissions{hotKeys, desktop.clock};
    MemoryKeyValueStore store;
    AppSettings settings{store, hotKeys};
    int finishes = 0;
    QWidget window;
    QLineEdit input{&window};
    std::unique_ptr<OnboardingState> state;
    std::unique_ptr<OnboardingView> view;
};

TEST_F(WalkThroughView, every_page_has_the_ways_on_that_it_needs_and_tells_screen_readers_its_number) {
    const auto spokenPage = [this] {
        return QAccessible::queryAccessibleInterface(view->findChild<PageIndicator*>())
            ->text(QAccessible::Name);
    };
    EXPECT_THAT(visibleTitles(), ElementsAre(skip, next));
    EXPECT_TRUE(spokenPage().contains(u"1"_s)) << qPrintable(spokenPage());
    click(next);
    EXPECT_THAT(visibleTitles(), testing::IsSupersetOf({skip, back, next}));
    click(next);
    EXPECT_THAT(visibleTitles(), ElementsAre(skip, back, next));
    click(next);
    EXPECT_THAT(visibleTitles(), ElementsAre(back, finish));
    EXPECT_FALSE(spokenPage().contains(u"1"_s)) << qPrintable(spokenPage());
    for (int i = 0; i < 3; ++i)
        click(back);
    EXPECT_THAT(visibleTitles(), ElementsAre(skip, next));
}

TEST_F(WalkThroughView, a_permission_is_asked_for_on_its_card_until_it_is_granted) {
    desktop.permissions.accessibility = true;
    begin();
    goTo(1);
    const auto cards = view->findChildren<PermissionStep*>();
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
    desktop.clock.advance(1s);
    ASSERT_TRUE(nextTurn());
    EXPECT_FALSE(request->isVisible());
    EXPECT_EQ(badge(1), u"ĐÃ CẤP"_s);
    EXPECT_EQ(focusedTitle(), QString()) << "the keyboard went on to another button";

    view->hide();
    desktop.permissions.screenCapture = false;
    view->show();
    ASSERT_TRUE(nextTurn());
    EXPECT_EQ(badge(1), u"CHƯA CẤP"_s) << "what is shown is not looked up on appearing";
}

TEST_F(WalkThroughView, the_last_page_names_the_shortcuts_of_this_machine_as_they_are) {
    goTo(3);
    EXPECT_TRUE(textsIn(*view).contains(u"Trên máy này: Super + Shift + D và Super + Shift + S"_s));
    settings.updateCustomHotKey(17, 2048, u"⌥ T"_s);
    ASSERT_TRUE(nextTurn());
    EXPECT_TRUE(textsIn(*view).contains(u"Trên máy này: Alt + T và Super + Shift + S"_s));
}

TEST_F(WalkThroughView, return_alone_leads_through_it) {
    EXPECT_EQ(focusedTitle(), next);
    for (int step = 0; step < 4; ++step)
        press(Qt::Key_Return);
    EXPECT_EQ(finishes, 1);
    view->setFocus();
    press(Qt::Key_A);
    EXPECT_EQ(finishes, 1);
    press(Qt::Key_Enter);
    EXPECT_EQ(finishes, 2) << "also when none of its buttons has the focus";
}

TEST_F(WalkThroughView, the_keyboard_stays_within_it) {
    goTo(1);
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

    input.setFocus();
    EXPECT_EQ(focusedTitle(), next) << "what lies below gets no keys";
    view->hide();
    input.setFocus();
    EXPECT_TRUE(input.hasFocus());
}

TEST_F(WalkThroughView, the_focus_and_its_ring_go_on_to_the_main_button_when_theirs_is_gone) {
    goTo(1);
    press(Qt::Key_Backtab);
    ASSERT_EQ(focusedTitle(), back);
    press(Qt::Key_Return);
    EXPECT_EQ(focusedTitle(), next);
    EXPECT_TRUE(qobject_cast<Button*>(QApplication::focusWidget())->showsFocusRing());

    begin();
    goTo(2);
    press(Qt::Key_Return);
    ASSERT_EQ(focusedTitle(), finish);
    EXPECT_FALSE(qobject_cast<Button*>(QApplication::focusWidget())->showsFocusRing());
}

TEST_F(WalkThroughView, a_page_changes_in_a_motion_unless_the_desktop_asks_for_none) {
    const auto isOnItsWay = [this] {
        begin();
        view->hide();
        goTo(2);
        view->show();
        const QImage there = pictureOf(*view);
        begin();
        goTo(2);
        return pictureOf(*view) != there;
    };
    EXPECT_FALSE(isOnItsWay());
    Theme::setAppearance({});
    EXPECT_TRUE(isOnItsWay());
}

TEST_F(WalkThroughView, stays_within_its_pages_and_may_be_taken_away_by_whoever_is_told_of_its_end) {
    view.reset();
    state = std::make_unique<OnboardingState>(
        OnboardingState::Dependencies{hotKeys, permissions, settings}, [this] { state.reset(); });
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
