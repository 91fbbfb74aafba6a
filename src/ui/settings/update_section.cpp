#include "ui/settings/update_section.h"

#include <QStringBuilder>

#include "common/on_change.h"
#include "ui/kit/badge.h"
#include "ui/kit/button.h"
#include "ui/kit/focus_rest.h"
#include "ui/kit/icon_view.h"
#include "ui/kit/label.h"
#include "ui/kit/spinner.h"
#include "ui/kit/surface.h"
#include "ui/kit/tooltip.h"
#include "ui/settings/section.h"
#include "ui/settings/settings_state.h"
#include "update/update_service.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

constexpr int statusRowHeight = 24;  // the height with a button, kept without one
constexpr qsizetype sectionNotes = 5000;

}  // namespace

UpdateSection::UpdateSection(SettingsState& state, QWidget* parent)
    : QWidget(parent), m_state(state), m_updates(state.updateService()) {
    filled(this, column({}, {section(10, {heading(), statusRow(), releaseNotes()})}));
    onAnyChange(m_updates, this, [this] { refresh(); });
    refresh();
}

QLayout* UpdateSection::heading() {
    return row({},
        {sectionHeading({u"arrow.triangle.2.circlepath"_s, 13, true}, u"Cập nhật ứng dụng"_s),
            new Badge(badge::version, u"v"_s + m_updates.currentVersion())});
}

QWidget* UpdateSection::statusRow() {
    m_status = new Label(status(), text::caption);  // an old outcome, which is no news
    m_status->setWraps();
    m_checkSpinner = new Spinner(14, ColorRole::secondary);
    m_updateSpinner = new Spinner(13, ColorRole::secondary);
    TextStyle digits = text::fixedWidth;
    digits.weight = Weight::bold;
    m_percentage = new Label({}, digits);
    m_install = new Button(button::mainSmall, {.title = u"Cập nhật ngay"_s});
    connect(m_install, &Button::clicked, this, [this] { m_updates.startAutoUpdate(); });
    m_check = new Button(button::bordered, {.title = u"Kiểm tra cập nhật"_s});
    connect(m_check, &Button::clicked, this, [this] { m_updates.checkForUpdates(true); });

    auto* line = filled(new QWidget,
        row({.spacing = 6},
            {StackItem(m_status, Qt::AlignVCenter, 1), m_checkSpinner, m_updateSpinner, m_percentage,
                m_install, m_check}));
    line->setMinimumHeight(statusRowHeight);
    return line;
}

QWidget* UpdateSection::releaseNotes() {
    m_notesTitle = new Label({}, text::caption.with(Weight::bold));
    m_notesText = new Label({}, text::caption, ColorRole::secondary);
    m_notesText->setWraps();
    m_notes = filled(new Surface(ColorRole::surface2, ColorRole::hairline, radius::control),
        column({.spacing = 2, .padding = {8, 8, 8, 8}}, {m_notesTitle, m_notesText}));
    return m_notes;
}

QString UpdateSection::status() const {
    const QString status = beginningOfMessage(m_updates.statusMessage().value_or(QString()));
    return status.isEmpty() ? u"Kiểm tra phiên bản mới nhất từ máy chủ"_s : status;
}

void UpdateSection::refresh() {
    const bool available = m_updates.isUpdateAvailable();
    const bool hasStatus = !m_updates.statusMessage().value_or(QString()).isEmpty();
    const bool highlighted = available && hasStatus;
    if (hasStatus)
        m_status->setNews(status());
    else
        m_status->setText(status());
    m_status->setStyle(highlighted ? text::caption.with(Weight::bold) : text::caption);
    m_status->setColor(highlighted ? ColorRole::accentText : ColorRole::secondary);

    const bool checking = m_updates.isChecking();
    const bool updating = !checking && m_updates.isUpdating();
    const bool idle = !checking && !updating;
    m_checkSpinner->setVisible(checking);
    m_updateSpinner->setVisible(updating);
    m_percentage->setVisible(updating);
    m_percentage->setText(QString::number(m_state.downloadPercentage()) % u"%");
    setTooltip(m_install,
        m_updates.isPackaged() ? u"Mở trang web: bản này được cập nhật qua gói cài đặt"_s : QString());
    Button* const offered = available ? m_install : m_check;
    for (Button* button : {m_install, m_check})
        if ((!idle || button != offered) && restFocus(*this, *button))
            m_resting = button;
    m_install->setVisible(idle && available);
    m_check->setVisible(idle && !available);
    // Not the other one: a key that is pressed once more to look for an update must not install it.
    if (idle && m_resting == offered)
        wakeFocus(*this, *offered);

    const auto& offer = m_updates.updateInfo();
    m_notes->setVisible(available && offer.has_value());
    if (offer) {
        m_notesTitle->setText(u"Nội dung bản cập nhật v" % offer->version % u":");
        m_notesText->setText(beginningOfMessage(offer->releaseNotes, sectionNotes));
    }
}

}  // namespace tralio
