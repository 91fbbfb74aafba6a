#include "ui/main/main_view.h"

#include <QDrag>
#include <QUrl>

#include "common/on_change.h"
#include "engine/hosts.h"
#include "hotkeys/hot_key_service.h"
#include "state/app_state.h"
#include "ui/about/about_view.h"
#include "ui/history/history_state.h"
#include "ui/history/history_view.h"
#include "ui/kit/button.h"
#include "ui/kit/cross_fade.h"
#include "ui/kit/focus_order.h"
#include "ui/kit/icon_view.h"
#include "ui/kit/label.h"
#include "ui/kit/popup_menu.h"
#include "ui/kit/scroll_panel.h"
#include "ui/kit/stack.h"
#include "ui/kit/surface.h"
#include "ui/kit/tab_strip.h"
#include "ui/kit/tooltip.h"
#include "ui/main/main_footer.h"
#include "ui/main/update_banner.h"
#include "ui/onboarding/onboarding_state.h"
#include "ui/onboarding/onboarding_view.h"
#include "ui/settings/settings_state.h"
#include "ui/settings/settings_view.h"
#include "ui/translate/translate_state.h"
#include "ui/translate/translate_view.h"
#include "ui/undo/undo_strip.h"
#include "update/update_service.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

constexpr int tabChange = 150;          // milliseconds
constexpr int onboardingClosing = 250;  // milliseconds

}  // namespace

MainView::MainView(Dependencies needs, Actions actions, QWidget* parent)
    : QWidget(parent),
      m_needs(needs),
      m_actions(std::move(actions)),
      m_settings(needs.store, needs.hotKeys),
      m_history(needs.store),
      m_permissions(needs.hotKeys, needs.clock),
      m_undo(needs.clock),
      m_state({needs.store, needs.appState, m_permissions, needs.updates}) {
    loadFontsAsDrawn();
    m_panelArea = filled(new QWidget, column({}, {}));
    m_footer = new MainFooter({m_state, m_settings, m_needs.hotKeys.keys()}, m_needs.updates.currentVersion(),
        {[this](const Control& cause) { openPermissions(cause); }, [this] { openShortcuts(); }});
    auto* banner = new UpdateBanner(m_needs.updates, [this] { m_state.dismissUpdate(); });
    m_body = filled(new QWidget,
        column({},
            {header(), new Divider, banner, {m_panelArea, {}, 1}, new UndoStrip(m_undo, *m_panelArea),
                new Divider, m_footer}));
    filled(this, column({}, {m_body}));

    onAnyChange(
        m_state, this, [this] { refresh(); });
    onAnyChange(
        m_needs.appState, this, [this] { refresh(); });
    onAnyChange(
        m_settings, this, [this] { refresh(); });
    onAnyChange(
        m_needs.hotKeys.keys(), this, [this] { refresh(); });
    onChange(
        m_needs.appState, this, [this] { return m_needs.appState.isKeyAwaited(); },
        [this] { m_settings.reloadApiKey(); });
    refresh();
}

MainView::~MainView() {
    delete m_leavingPanel;  // before the states that they show
    delete m_panel;
    delete m_onboardingView;
}

void MainView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    m_state.appear();
}

bool MainView::focusNextPrevChild(bool next) {
    return moveFocus(*this, next);
}

void MainView::openPermissions(const Control& cause) {
    m_state.selectedTab = AppTab::settings;
    showPanel();
    if (auto* settings = qobject_cast<SettingsView*>(m_panel))
        settings->showPermissions(cause.showsFocusRing() ? Qt::TabFocusReason : Qt::OtherFocusReason);
}

void MainView::openShortcuts() {
    m_state.selectedTab = AppTab::settings;
    showPanel();
    if (auto* settings = qobject_cast<SettingsView*>(m_panel))
        settings->showShortcuts();
}

void MainView::openGuide() {
    m_actions.openURL(QUrl(u"https://%1/guide.html"_s.arg(hosts::website)));
}

QWidget* MainView::header() {
    m_tabs = new TabStrip(
        {{u"character.book.closed.fill"_s, u"Tralio"_s}, {u"clock.arrow.circlepath"_s, u"Lịch sử"_s},
            {u"gearshape.fill"_s, u"Cài đặt"_s}, {u"person.crop.circle.fill"_s, u"Tác giả"_s}});
    connect(m_tabs, &TabStrip::selected, this, [this](int index) {
        if (const auto tab = appTab(index)) {
            m_panelMotion = Motion::fade;
            m_state.selectedTab = *tab;
        }
    });
    auto* guide = new Button(button::icon, {.icon = u"questionmark.circle"_s});
    setTooltip(guide, u"Hướng dẫn sử dụng (Mở tài liệu)"_s);
    connect(guide, &Button::clicked, this, &MainView::openGuide);
    auto* quit = new Button(button::icon, {.icon = u"power"_s});
    setTooltip(quit, u"Thoát ứng dụng Tralio"_s);
    connect(quit, &Button::clicked, this, [this] { m_actions.quit(); });

    auto* name = row({.spacing = 6},
        {new IconView({u"character.bubble.fill"_s, 16, true}, ColorRole::accentIcon),
            new Label(u"Tralio"_s, text::panelTitle)});
    auto* bar = filled(
        new QWidget, row({.padding = {14, 0, 8, 0}}, {name, Stretch{}, m_tabs, Stretch{}, guide, quit}));
    bar->setFixedHeight(50);
    return bar;
}

void MainView::refresh() {
    m_tabs->setCurrent(static_cast<int>(m_state.selectedTab()));
    // The panel is not made while the first walk-through covers it: that saves 1.5 MB until it is needed.
    if (m_panel != nullptr || !m_state.isOnboardingShown())
        showPanel();
    if (m_state.isOnboardingShown())
        showOnboarding();
    else
        closeOnboarding();

    m_footer->refresh();
}

void MainView::showPanel() {
    const AppTab tab = m_state.selectedTab();
    if (m_shownTab == tab)
        return;
    m_shownTab = tab;
    CrossFade fade(m_panelArea, std::exchange(m_panelMotion, Motion::none) == Motion::fade ? tabChange : 0);
    dropPanel();
    m_panel = makePanel();
    m_panelArea->layout()->addWidget(m_panel);
    // If the old panel took the focus with it, what scrolls in the new one gets it, so that the Page keys
    // work.
    const bool scrolls = qobject_cast<ScrollPanel*>(m_panel) != nullptr;
    QWidget* scroll = scrolls ? m_panel : m_panel->findChild<ScrollPanel*>();
    if (window()->focusWidget() == nullptr && scroll != nullptr)
        scroll->setFocus(Qt::OtherFocusReason);
    fade.start();
}

void MainView::dropPanel() {
    // While the panel is whole: a menu gives the focus back to what had it.
    for (PopupMenu* menu : window()->findChildren<PopupMenu*>())
        menu->close();
    const QDrag* drag = m_panel != nullptr ? m_panel->findChild<QDrag*>() : nullptr;
    if (drag == nullptr) {
        delete m_panel;
        return;
    }
    // A text is being dragged out of the panel, whose editor waits in the drag's event loop: it must live
    // until that ends.
    m_leavingPanel = m_panel;
    m_panel->hide();
    m_panelArea->layout()->removeWidget(m_panel);
    connect(drag, &QObject::destroyed, m_panel, &QObject::deleteLater);
    // Keeps the state alive as long as the panel shows it.
    connect(m_panel, &QObject::destroyed, this, [state = m_panelState] {});
}

QWidget* MainView::makePanel() {
    switch (m_state.selectedTab()) {
        case AppTab::translate:
            return makeTranslatePanel();
        case AppTab::history:
            return makeHistoryPanel();
        case AppTab::settings:
            return makeSettingsPanel();
        case AppTab::author:
            m_panelState.reset();
            return new ScrollPanel(new AboutView(m_needs.updates.currentVersion(), m_actions.openURL));
    }
    Q_UNREACHABLE();
}

QWidget* MainView::makeTranslatePanel() {
    const auto state = std::make_shared<TranslateState>(
        TranslateState::Dependencies{m_needs.ai, m_needs.captures, m_needs.ocr, m_needs.speech, m_settings,
            m_history, m_needs.appState, m_needs.pasteboard, m_needs.clock},
        Binding<QString>{[this] { return m_state.textToTranslate(); },
            [this](QString text) { m_state.textToTranslate = std::move(text); }, &m_state});
    m_panelState = state;
    // Scrolls on a very low screen, or with a long error message.
    return new ScrollPanel(new TranslateView(*state));
}

QWidget* MainView::makeHistoryPanel() {
    const auto state = std::make_shared<HistoryState>(
        HistoryState::Dependencies{m_history, m_needs.pasteboard, m_undo, m_removals, m_needs.clock},
        [this](const TranslationItem& item) {
            m_panelMotion = Motion::fade;
            m_state.select(item);
        });
    m_panelState = state;
    return new HistoryView(*state);
}

QWidget* MainView::makeSettingsPanel() {
    const auto state = std::make_shared<SettingsState>(SettingsState::Dependencies{m_settings,
        m_needs.hotKeys, m_needs.ai, m_needs.updates, m_needs.appState, m_needs.pasteboard, m_permissions,
        m_undo, m_needs.clock, m_needs.keyCodes, m_isClipboardChecked, [this] { openGuide(); }});
    m_panelState = state;
    return new SettingsView(*state);
}

void MainView::showOnboarding() {
    if (m_onboarding)
        return;
    CrossFade fade(this, onboardingClosing);
    m_formerFocus = window()->focusWidget();
    const auto* control = qobject_cast<Control*>(m_formerFocus);
    m_showedRing = control != nullptr && control->showsFocusRing();
    m_onboarding = std::make_unique<OnboardingState>(
        OnboardingState::Dependencies{m_needs.hotKeys, m_permissions, m_settings},
        [this] { m_state.finishOnboarding(); });
    m_onboardingView = new OnboardingView(*m_onboarding);
    layout()->addWidget(m_onboardingView);
    // Hidden, so that neither the Tab key nor screen readers reach it.
    m_body->hide();
    fade.start();
}

void MainView::closeOnboarding() {
    if (!m_onboarding)
        return;
    CrossFade fade(this, onboardingClosing);
    delete std::exchange(m_onboardingView, nullptr);
    m_onboarding.reset();
    m_body->show();
    if (m_formerFocus != nullptr)
        m_formerFocus->setFocus(m_showedRing ? Qt::TabFocusReason : Qt::OtherFocusReason);
    fade.start();
}

}  // namespace tralio
