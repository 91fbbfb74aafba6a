#include "ui/settings/settings_view.h"

#include <QScrollBar>

#include "ui/kit/button.h"
#include "ui/kit/icon_view.h"
#include "ui/kit/label.h"
#include "ui/kit/scroll_panel.h"
#include "ui/kit/surface.h"
#include "ui/settings/options_section.h"
#include "ui/settings/permission_cards.h"
#include "ui/settings/provider_section.h"
#include "ui/settings/section.h"
#include "ui/settings/settings_state.h"
#include "ui/settings/shortcut_section.h"
#include "ui/settings/update_section.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

constexpr int sectionGap = 14;

}  // namespace

SettingsView::SettingsView(SettingsState& state, QWidget* parent) : QWidget(parent), m_state(state) {
    m_permissions = new PermissionCards(m_state);
    auto* content = filled(new QWidget,
        column({.spacing = sectionGap, .padding = {14, 14, 14, 14}},
            {
                header(),
                guideStrip(),
                new ShortcutSection(m_state),
                new ProviderSection(m_state),
                new OptionsSection(m_state),
                m_permissions,
                new UpdateSection(m_state),
                Stretch{},
            }));
    m_scroll = new ScrollPanel(content);
    filled(this, column({}, {m_scroll}));
}

void SettingsView::showPermissions(Qt::FocusReason reason) {
    if (reason == Qt::TabFocusReason)
        m_permissions->focusMissing();
    // A new panel reaches its final height only after some turns of the event loop: each turn passes the
    // heights of the wrapping labels one layout up.
    constexpr int turns = 20;
    scrollToPermissions(turns);
}

void SettingsView::showShortcuts() {
    m_scroll->verticalScrollBar()->setValue(0);
}

void SettingsView::scrollToPermissions(int turnsLeft) {
    const int top = m_permissions->mapTo(m_scroll->widget(), QPoint()).y();
    m_scroll->verticalScrollBar()->setValue(top - sectionGap);
    if (turnsLeft > 0)
        QMetaObject::invokeMethod(
            this, [this, turnsLeft] { scrollToPermissions(turnsLeft - 1); }, Qt::QueuedConnection);
}

QLayout* SettingsView::header() {
    auto* restore = new Button(button::word, {.title = u"Khôi phục mặc định"_s});
    restore->setColor(ColorRole::secondary);
    connect(restore, &Button::clicked, this, [this] { m_state.restoreDefaults(); });
    return row({}, {new Label(u"Cài đặt hệ thống"_s, text::panelTitle), Stretch{}, restore, wordOverhang});
}

QWidget* SettingsView::guideStrip() {
    auto* onboarding = new Button(button::word, {.title = u"Xem giới thiệu"_s});
    onboarding->setWeight(Weight::medium);
    onboarding->setColor(ColorRole::secondary);
    connect(onboarding, &Button::clicked, this, [this] { m_state.showOnboarding(); });
    auto* guide = new Button(button::word, {.title = u"Mở cẩm nang ↗"_s});
    guide->setWeight(Weight::semibold);
    guide->setColor(ColorRole::accentText);
    connect(guide, &Button::clicked, this, [this] { m_state.openGuide(); });

    auto* strip = new Surface(ColorRole::accentTint, ColorRole::accentTintEdge, radius::block);
    // The buttons are 2 px higher than their line, whose padding is 7.
    auto* words = row({.padding = {10, 6, 10, 6}},
        {new IconView({.name = u"book.pages.fill"_s, .pointSize = 13}, ColorRole::accentIcon), Gap{8},
            new Label(u"Cần xem hướng dẫn cấp quyền & lấy API Key?"_s, text::caption.with(Weight::medium)),
            Stretch{}, onboarding, new Label(u"•"_s, text::caption, ColorRole::separator), guide,
            wordOverhang});
    return filled(strip, words);
}

void SettingsView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    m_state.panelAppeared();
}

void SettingsView::hideEvent(QHideEvent* event) {
    m_state.panelDisappeared();
    QWidget::hideEvent(event);
}

}  // namespace tralio
