#include "ui/main/main_footer.h"

#include <utility>

#include "hotkeys/hot_keys.h"
#include "state/app_settings.h"
#include "ui/kit/button.h"
#include "ui/kit/chip.h"
#include "ui/kit/focus_rest.h"
#include "ui/kit/icon_view.h"
#include "ui/kit/label.h"
#include "ui/kit/stack.h"
#include "ui/kit/tooltip.h"
#include "ui/main/main_state.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

constexpr int footerHeight = 33;

/// Whether a hot key works, and the explanation.
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

MainFooter::MainFooter(Dependencies needs, const QString& version, Actions actions, QWidget* parent)
    : QWidget(parent), m_needs(needs), m_actions(std::move(actions)) {
    m_warning = new Button(button::footerWarning, {.icon = u"exclamationmark.triangle.fill"_s});
    setTooltip(m_warning, u"Nhấn để mở Cài đặt và cấp quyền cho ứng dụng"_s);
    m_selectionChip = new Chip(QString());
    m_captureChip = new Chip(QString());
    connect(
        m_warning, &Button::clicked, this, [this] { m_actions.openPermissions(*m_warning); });
    connect(
        m_selectionChip, &Chip::clicked, this,
        [this] { open(*m_selectionChip, m_needs.state.isAccessibilityGranted()); });
    connect(m_captureChip, &Chip::clicked, this,
        [this] { open(*m_captureChip, m_needs.state.isScreenCaptureGranted()); });

    auto* name =
        new Label(u"Tralio v"_s + version, text::caption.with(Weight::semibold), ColorRole::secondary);
    filled(this,
        row({.spacing = 6, .padding = {14, 0, 14, 0}},
            {row({.spacing = 4},
                 {new IconView({u"character.bubble.fill"_s, 10}, ColorRole::accentIcon), name}),
                Stretch{}, m_warning, m_selectionChip, m_captureChip}));
    setFixedHeight(footerHeight);
}

void MainFooter::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    refreshWarning();
}

void MainFooter::open(const Chip& chip, bool granted) const {
    if (granted)
        m_actions.openShortcuts();  // the permission is there, so the hot key was refused
    else
        m_actions.openPermissions(chip);
}

void MainFooter::refresh() {
    showReadiness(m_selectionChip, u"Bôi đen: "_s + m_needs.settings.hotKeyDisplay(),
        {m_needs.state.isAccessibilityGranted(), m_needs.hotKeys.textStatus(),
            u"Quyền Trợ năng: Đã bật (Sẵn sàng)"_s, u"Chưa cấp quyền Trợ năng - Nhấn để mở Cài đặt"_s});
    showReadiness(m_captureChip, u"Chụp: "_s + m_needs.settings.ocrHotKeyDisplay(),
        {m_needs.state.isScreenCaptureGranted(), m_needs.hotKeys.ocrStatus(),
            u"Quyền Ghi màn hình (OCR): Đã bật (Sẵn sàng)"_s,
            u"Chưa cấp quyền Ghi màn hình - Nhấn để mở Cài đặt"_s});
    refreshWarning();
}

// Two long shortcuts leave no room for the whole warning; the red chips say the same.
void MainFooter::refreshWarning() {
    const QString warning = m_needs.state.ungrantedWarningText().value_or(QString());
    if (warning.isEmpty())
        restFocus(*this, *m_warning);
    m_warning->setVisible(!warning.isEmpty());
    m_warning->setTitle(warning);
    for (qsizetype length = warning.size(); sizeHint().width() > width() && length > 0; --length)
        m_warning->setTitle(warning.first(length - 1).trimmed() + u'…');
    m_warning->setAccessibleName(warning);
}

}  // namespace tralio
