#include "ui/main/update_banner.h"

#include <utility>

#include "common/on_change.h"
#include "ui/kit/badge.h"
#include "ui/kit/button.h"
#include "ui/kit/focus_rest.h"
#include "ui/kit/icon_view.h"
#include "ui/kit/label.h"
#include "ui/kit/reveal.h"
#include "ui/kit/spinner.h"
#include "ui/kit/stack.h"
#include "ui/kit/surface.h"
#include "ui/kit/tooltip.h"
#include "update/update_service.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

/// More than fits a line; a server may send a very long text.
constexpr qsizetype bannerNotes = 300;

}  // namespace

UpdateBanner::UpdateBanner(UpdateService& updates, std::function<void()> dismiss, QWidget* parent)
    : QWidget(parent), m_updates(updates), m_dismiss(std::move(dismiss)) {
    auto* strip = filled(new Surface(ColorRole::accentTint, ColorRole::none, 0),
        row({.spacing = 8, .padding = {14, 0, 10, 0}},
            {new IconView({u"sparkles"_s, 13, true}, ColorRole::accentIcon), {offer(), {}, 1}, actions()}));
    strip->setFixedHeight(43);
    m_reveal = new Reveal(filled(new QWidget, column({}, {strip, new Divider})));
    filled(this, column({}, {m_reveal}));

    onAnyChange(m_updates, this, [this] { refresh(); });
    refresh();
}

QWidget* UpdateBanner::offer() {
    m_title = new Label(QString(), text::caption.with(Weight::bold));
    m_notes = new Label(QString(), text::smallCaption, ColorRole::secondary);
    return filled(new QWidget,
        column({.spacing = 1},
            {Stretch{}, row({.spacing = 6}, {m_title, new Badge(badge::offer, u"Mới"_s), Stretch{}}), m_notes,
                Stretch{}}));
}

QWidget* UpdateBanner::actions() {
    m_percentage = new Label(QString(), text::smallCaption.with(Weight::bold));
    m_progress =
        filled(new QWidget, row({.spacing = 6, .padding = {0, 0, 4, 0}}, {new Spinner(12), m_percentage}));
    m_install =
        new Button(button::banner, {.icon = u"arrow.down.circle.fill"_s, .title = u"Cập nhật ngay"_s});
    connect(m_install, &Button::clicked, this, [this] { m_updates.startAutoUpdate(); });
    m_close = new Button(button::close, {.icon = u"xmark"_s});
    setTooltip(m_close, u"Ẩn thông báo này"_s);
    connect(m_close, &Button::clicked, this, [this] { m_dismiss(); });
    return filled(new QWidget, row({.spacing = 8}, {m_progress, m_install, m_close}));
}

void UpdateBanner::refresh() {
    const auto info = m_updates.updateInfo();
    const bool offered = m_updates.isUpdateAvailable() && info;
    const bool updating = m_updates.isUpdating();
    if (QWidget* const owner = parentWidget(); !offered && owner != nullptr)
        restFocus(*owner, *m_reveal);
    m_reveal->setRevealed(offered);
    if (!offered)
        return;
    m_title->setText(u"Bản cập nhật mới: v"_s + info->version);
    const QString failure = beginningOfMessage(m_updates.installationFailure().value_or(QString()));
    m_notes->setColor(failure.isEmpty() ? ColorRole::secondary : ColorRole::red);
    if (failure.isEmpty())
        m_notes->setText(beginningOfMessage(info->releaseNotes, bannerNotes).simplified());
    else
        m_notes->setNews(failure);
    setTooltip(m_notes, failure);
    m_notes->setVisible(!m_notes->text().isEmpty());
    m_progress->setVisible(updating);
    m_percentage->setText(u"%1%"_s.arg(int(m_updates.downloadProgress() * 100)));
    setTooltip(m_install,
        m_updates.isPackaged() ? u"Mở trang web: bản này được cập nhật qua gói cài đặt"_s : QString());
    if (updating) {
        restFocus(*this, *m_install);
        restFocus(*this, *m_close);
    }
    m_install->setVisible(!updating);
    m_close->setVisible(!updating);
    if (!updating)
        wakeFocus(*this, *m_install);
}

}  // namespace tralio
