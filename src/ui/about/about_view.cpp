#include "ui/about/about_view.h"

#include "engine/hosts.h"
#include "ui/kit/button.h"
#include "ui/kit/emblem.h"
#include "ui/kit/icon_tile.h"
#include "ui/kit/icon_view.h"
#include "ui/kit/label.h"
#include "ui/kit/stack.h"
#include "ui/kit/surface.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

constexpr TextStyle nameText{.size = 18, .line = 24, .weight = Weight::bold, .spacing = -1.8};

QString webAddress(const QString& path = {}) {
    return hosts::website.toString() + path;
}

QUrl webPage(const QString& address) {
    return QUrl(u"https://"_s + address);
}

/// Mail goes to the bare domain; "www." names the web server.
QString mailAddress() {
    const QString host = hosts::website.toString();
    constexpr QStringView webServer = u"www.";
    return u"lienhe@"_s + (host.startsWith(webServer) ? host.sliced(webServer.size()) : host);
}

QLayout* centred(Label* text) {
    text->setAlignment(Qt::AlignHCenter);
    return row({}, {text});
}

/// A hairline between two rows, starting where their text starts.
QLayout* separator() {
    return row({.padding = {38, 0, 12, 0}}, {new Divider(nullptr, ColorRole::hairline)});
}

}  // namespace

AboutView::AboutView(const QString& version, std::function<void(const QUrl&)> openURL, QWidget* parent)
    : QWidget(parent), m_openURL(std::move(openURL)) {
    filled(this,
        column({.padding = {24, 0, 24, 0}},
            {
                Stretch{},
                {new Emblem(72, 36), Qt::AlignHCenter},
                Gap{12},
                centred(new Label(u"Tralio"_s, nameText)),
                Gap{2},
                centred(new Label(u"Phiên bản "_s + version, text::caption, ColorRole::secondary)),
                Gap{8},
                centred(new Label(u"Trợ lý dịch thuật nhỏ gọn, luôn sẵn sàng trên khay hệ thống."_s,
                    text::subtitle, ColorRole::secondary)),
                Gap{20},
                links(),
                Gap{12},
                donation(),
                Gap{16},
                centred(
                    new Label(u"Cảm ơn bạn đã sử dụng Tralio."_s, text::smallCaption, ColorRole::secondary)),
                Stretch{},
            }));
}

QWidget* AboutView::links() {
    const QString site = webAddress();
    const QString mail = mailAddress();
    const QString group = webAddress(u"/community"_s);
    return filled(new Surface(ColorRole::surface1, ColorRole::border15, radius::section),
        column({.padding = {0, 2, 0, 2}},
            {linkRow({u"globe"_s, u"Trang web"_s, site, webPage(site)}), separator(),
                linkRow({u"envelope"_s, u"Email"_s, mail, QUrl(u"mailto:"_s + mail)}), separator(),
                linkRow({u"bubble.left"_s, u"Nhóm trao đổi"_s, group, webPage(group)})}));
}

QLayout* AboutView::linkRow(const Link& link) {
    auto* open = new Button(button::word, {.title = link.address + u" ↗"_s});
    open->setWeight(Weight::medium);
    open->setColor(ColorRole::accentText);
    open->setSpokenCaption(link.title);
    open->setCursor(Qt::PointingHandCursor);
    connect(open, &Button::clicked, this, [this, url = link.url] { m_openURL(url); });
    auto* content = row({.spacing = 10, .padding = {12, 11, 12 - button::word.padding, 11}},
        {new IconView({link.icon, 12}, ColorRole::secondary), new Label(link.title, text::menu), Stretch{},
            open});
    return content;
}

QWidget* AboutView::donation() {
    auto* reason =
        new Label(u"Tralio miễn phí cho mọi người. Nếu thấy hữu ích, bạn có thể mời tác giả một ly cà phê."_s,
            text::caption, ColorRole::secondary);
    reason->setWraps();
    auto* donate = new Button(button::mainSmall, {.title = u"Ủng hộ ↗"_s});
    connect(donate, &Button::clicked, this, [this] { m_openURL(webPage(webAddress(u"/donate"_s))); });
    return filled(new Surface(ColorRole::accentTint, ColorRole::accentTintEdge, radius::section),
        row({.spacing = 12, .padding = {12, 12, 12, 12}},
            {new IconTile({u"heart.fill"_s, 13}, ColorRole::accentIcon, ColorRole::accentBadge),
                {column({.spacing = 2}, {new Label(u"Ủng hộ tác giả"_s, text::blockTitle), reason}), 1},
                Gap{16}, donate}));
}

}  // namespace tralio
