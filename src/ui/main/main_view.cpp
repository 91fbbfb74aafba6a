#include "ui/main/main_view.h"

#include <QUrl>

#include "common/on_change.h"
#include "engine/hosts.h"
#include "hotkeys/hot_key_service.h"
#include "state/app_state.h"
#include "ui/about/about_view.h"
#include "ui/history/history_state.h"
#include "ui/history/history_view.h"
#include "ui/kit/button.h"
#include "ui/kit/chip.h"
#include "ui/kit/cross_fade.h"
#include "ui/kit/focus_order.h"
#include "ui/kit/focus_rest.h"
#include "ui/kit/icon_view.h"
#include "ui/kit/label.h"
#include "ui/kit/scroll_panel.h"
#include "ui/kit/stack.h"
#include "ui/kit/surface.h"
#include "ui/kit/tab_strip.h"
#include "ui/kit/tooltip.h"
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

/// Whether a hot key does what it promises, and why.
struct Readiness {
    bool granted;
    HotKeyStatus hotKey;
    QString ready;
    QString missing;
};

void showReadiness(Chip* chip, const QString& title, const Readiness& readiness) {
    const bool works = readiness.granted && !isTurnedDown(readiness.hotKey);
    chip->setTitle(title);
    chip->setState(works ? Chip::State::good : Chip::State::trouble);
    setTooltip(chip,
        !readiness.granted ? readiness.missing
            : works        ? readiness.ready
                           : u"Phím tắt không dùng được - Nhấn để mở Cài đặt"_s);
}

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
    m_panelArea = filled(new QWidget, column({}, {}));
    auto* banner = new UpdateBanner(m_needs.updates, [this] { m_state.dismissUpdate(); });
    m_body = filled(new QWidget,
        column({},
            {header(), new Divider, banner, {m_panelArea, {}, 1}, new UndoStrip(m_undo, *m_panelArea),
                new Divider, footer()}));
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
    delete m_panel;  // before what they show
    delete m_onboardingView;
}

void MainView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    m_state.appear();
}

void MainView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    refreshFooter();
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

void MainView::openTrouble(const Chip& chip, bool granted) {
    if (!granted) {
        openPermissions(chip);
        return;
    }
    m_state.selectedTab = AppTab::settings;  // its hot key was refused, which the first section tells of
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

QWidget* MainView::footer() {
    auto* version = new Label(u"Tralio v"_s + m_needs.updates.currentVersion(),
        text::caption.with(Weight::semibold), ColorRole::secondary);
    m_warning = new Button(button::footerWarning, {.icon = u"exclamationmark.triangle.fill"_s});
    setTooltip(m_warning, u"Nhấn để mở Cài đặt và cấp quyền cho ứng dụng"_s);
    m_selectionChip = new Chip(QString());
    m_captureChip = new Chip(QString());
    connect(
        m_warning, &Button::clicked, this, [this] { openPermissions(*m_warning); });
    connect(
        m_selectionChip, &Chip::clicked, this,
        [this] { openTrouble(*m_selectionChip, m_state.isAccessibilityGranted()); });
    connect(m_captureChip, &Chip::clicked, this,
        [this] { openTrouble(*m_captureChip, m_state.isScreenCaptureGranted()); });

    m_footer = filled(new QWidget,
        row({.spacing = 6, .padding = {14, 0, 14, 0}},
            {row({.spacing = 4},
                 {new IconView({u"character.bubble.fill"_s, 10}, ColorRole::accentIcon), version}),
                Stretch{}, m_warning, m_selectionChip, m_captureChip}));
    m_footer->setFixedHeight(33);
    return m_footer;
}

void MainView::refresh() {
    m_tabs->setCurrent(static_cast<int>(m_state.selectedTab()));
    // The first walk-through hides what is not there yet: a megabyte and a half that waits until it is
    // needed.
    if (m_panel != nullptr || !m_state.isOnboardingShown())
        showPanel();
    if (m_state.isOnboardingShown())
        showOnboarding();
    else
        closeOnboarding();

    refreshFooter();
}

void MainView::refreshFooter() {
    HotKeys& hotKeys = m_needs.hotKeys.keys();
    showReadiness(m_selectionChip, u"Bôi đen: "_s + m_settings.hotKeyDisplay(),
        {m_state.isAccessibilityGranted(), hotKeys.textStatus(), u"Quyền Trợ năng: Đã bật (Sẵn sàng)"_s,
            u"Chưa cấp quyền Trợ năng - Nhấn để mở Cài đặt"_s});
    showReadiness(m_captureChip, u"Chụp: "_s + m_settings.ocrHotKeyDisplay(),
        {m_state.isScreenCaptureGranted(), hotKeys.ocrStatus(),
            u"Quyền Ghi màn hình (OCR): Đã bật (Sẵn sàng)"_s,
            u"Chưa cấp quyền Ghi màn hình - Nhấn để mở Cài đặt"_s});

    const QString warning = m_state.ungrantedWarningText().value_or(QString());
    if (warning.isEmpty())
        restFocus(*m_footer, *m_warning);
    m_warning->setVisible(!warning.isEmpty());
    // Beside two long shortcuts there is no room for all of it; the red chips say the same.
    m_warning->setTitle(warning);
    for (qsizetype length = warning.size(); m_footer->sizeHint().width() > width() && length > 0; --length)
        m_warning->setTitle(warning.first(length - 1).trimmed() + u'…');
    m_warning->setAccessibleName(warning);
}

void MainView::showPanel() {
    const AppTab tab = m_state.selectedTab();
    if (m_shownTab == tab)
        return;
    m_shownTab = tab;
    CrossFade fade(m_panelArea, std::exchange(m_panelMotion, Motion::none) == Motion::fade ? tabChange : 0);
    delete m_panel;
    m_panel = makePanel();
    m_panelArea->layout()->addWidget(m_panel);
    fade.start();
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
    return new ScrollPanel(new TranslateView(*state));  // on a very low screen, or beside a long error
}

QWidget* MainView::makeHistoryPanel() {
    const auto state = std::make_shared<HistoryState>(
        HistoryState::Dependencies{m_history, m_needs.pasteboard, m_undo, m_needs.clock},
        [this](const TranslationItem& item) {
            m_panelMotion = Motion::fade;
            m_state.select(item);
        });
    m_panelState = state;
    return new HistoryView(*state);
}

QWidget* MainView::makeSettingsPanel() {
    const auto state = std::make_shared<SettingsState>(SettingsState::Dependencies{m_settings,
        m_needs.hotKeys, m_needs.ai, m_needs.updates, m_needs.appState, m_permissions, m_undo, m_needs.clock,
        m_needs.keyCodes, [this] { openGuide(); }});
    m_panelState = state;
    return new SettingsView(*state);
}

void MainView::showOnboarding() {
    if (m_onboarding)
        return;
    CrossFade fade(this, onboardingClosing);
    m_onboarding = std::make_unique<OnboardingState>(
        OnboardingState::Dependencies{m_needs.hotKeys, m_permissions, m_settings},
        [this] { m_state.finishOnboarding(); });
    m_onboardingView = new OnboardingView(*m_onboarding);
    layout()->addWidget(m_onboardingView);
    // Out of reach of the Tab key and of screen readers, too.
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
    fade.start();
}

}  // namespace tralio
