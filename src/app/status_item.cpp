#include "app/status_item.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QMenu>
#include <QPainter>
#include <QScreen>

#include <algorithm>

#include "ui/kit/icon.h"
#include "ui/kit/text_style.h"
#include "ui/kit/theme.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

/// The bubble with a white letter. A transparent letter would be lost in sway's bar, which draws
/// half-transparent pixels brighter than they are. Drawn in the sizes that a tray asks for, when it asks: all
/// of them at the start took 2 ms.
class TrayIcon final : public QIconEngine {
public:
    QPixmap pixmap(const QSize& size, QIcon::Mode /*mode*/, QIcon::State /*state*/) override {
        constexpr QRectF bubble(2, 2.75, 20, 15.75);  // without its tail
        const int side = std::max(1, std::min(size.width(), size.height()));
        QPixmap picture =
            iconOnPixels(u"character.bubble.fill"_s, color(ColorRole::accentIcon), side, bubble);
        QPainter painter(&picture);
        painter.setCompositionMode(QPainter::CompositionMode_DestinationOver);
        const QRectF aroundLetter = bubble.adjusted(4, 2, -4, -2);
        painter.fillRect(QTransform::fromScale(side / 24.0, side / 24.0).mapRect(aroundLetter), Qt::white);
        return picture;
    }
    void paint(QPainter* painter, const QRect& area, QIcon::Mode mode, QIcon::State state) override {
        QRect square(QPoint(), QSize(1, 1).scaled(area.size(), Qt::KeepAspectRatio));
        square.moveCenter(area.center());
        painter->drawPixmap(
            square, pixmap(square.size() * painter->device()->devicePixelRatioF(), mode, state));
    }
    /// Those that trays of the session bus are sent: they scale an icon that does not match.
    QList<QSize> availableSizes(QIcon::Mode /*mode*/, QIcon::State /*state*/) override {
        QList<QSize> sizes;
        for (const int side : {16, 20, 22, 24, 32, 44, 48, 64})
            sizes += QSize(side, side);
        return sizes;
    }
    [[nodiscard]] QIconEngine* clone() const override { return new TrayIcon; }
};

/// About the area of the icon around the place of a click, which trays report in physical pixels. Trays that
/// do not know the place report 0, 0.
std::optional<QRect> iconAround(const QPoint& pixel) {
    if (pixel.isNull())
        return std::nullopt;
    constexpr QPoint half(12, 12);
    for (const QScreen* screen : QGuiApplication::screens()) {
        const QPoint origin = screen->geometry().topLeft();  // the one point that scaling leaves unchanged
        const qreal ratio = screen->devicePixelRatio();
        if (QRect(origin, screen->geometry().size() * ratio).contains(pixel)) {
            const QPoint place = origin + (QPointF(pixel - origin) / ratio).toPoint();
            return QRect(place - half, place + half);
        }
    }
    return std::nullopt;
}

}  // namespace

StatusItem::StatusItem() : m_icon(new TrayIcon), m_item(u"Tralio"_s, m_icon) {
    QObject::connect(
        &m_item, &StatusNotifierItem::trayChanged, &m_item, [this](bool present) { setOnBus(present); });
    QObject::connect(&m_item, &StatusNotifierItem::activated, &m_item, [this](const QPoint& pixel) {
        m_clicked = iconAround(pixel);
        activate();
    });
    QObject::connect(
        &m_item, &StatusNotifierItem::menuRequested, &m_item,
        [this](const QPoint& pixel) {
            m_clicked = iconAround(pixel);
            // In native Wayland sessions a window without a parent cannot be placed.
            if (m_clicked && QGuiApplication::platformName() == u"xcb")
                openMenu(m_clicked->center());
            else
                activate();
        });
    QObject::connect(
        &m_item, &StatusNotifierItem::menuChosen, &m_item, [this](int index) { m_menu[index].action(); });
    if (!StatusNotifierItem::areThereTrays())
        setOnBus(false);  // at once: other trays embed the icon while the rest of the program is made
}

void StatusItem::setMenu(const QList<StatusMenuEntry>& entries) {
    m_menu = entries;
    QStringList titles;
    for (const StatusMenuEntry& entry : entries)
        titles += entry.title;
    m_item.setMenu(titles);
}

void StatusItem::setOnBus(bool onBus) {
    m_clicked.reset();
    m_isOnBus = onBus;
    if (onBus) {
        m_embedded.reset();
        return;
    }
    if (m_embedded)
        return;
    m_embedded = std::make_unique<QSystemTrayIcon>(m_icon);
    m_embedded->setToolTip(u"Tralio"_s);
    QObject::connect(m_embedded.get(), &QSystemTrayIcon::activated, m_embedded.get(),
        [this](QSystemTrayIcon::ActivationReason reason) {
            // The second of two quick clicks is reported as a double click, but counts as a click.
            if (reason == QSystemTrayIcon::Context)
                openMenu(QCursor::pos());
            else if (reason != QSystemTrayIcon::Unknown && reason != QSystemTrayIcon::MiddleClick)
                activate();
        });
    m_embedded->show();
}

void StatusItem::activate() const {
    if (m_action)
        m_action();
}

void StatusItem::openMenu(const QPoint& place) const {
    loadFontsAsDrawn();
    auto* menu = new QMenu;
    menu->setAttribute(Qt::WA_DeleteOnClose);
    QPalette palette = menu->palette();
    palette.setColor(QPalette::Window, color(ColorRole::menu));
    palette.setColor(QPalette::Base, color(ColorRole::menu));
    palette.setColor(QPalette::WindowText, color(ColorRole::text));
    palette.setColor(QPalette::Text, color(ColorRole::text));
    palette.setColor(QPalette::Highlight, color(ColorRole::accentFill));
    palette.setColor(QPalette::HighlightedText, color(ColorRole::onFill));
    menu->setPalette(palette);
    for (const StatusMenuEntry& entry : m_menu)
        if (entry.title.isEmpty())
            menu->addSeparator();
        else
            menu->addAction(entry.title, entry.action);
    menu->popup(place);
}

bool StatusItem::isInTray() const {
    return m_isOnBus || (m_embedded && QSystemTrayIcon::isSystemTrayAvailable());
}

std::optional<QRect> StatusItem::frame() const {
    if (!m_embedded)
        return m_clicked;
    const QRect geometry = m_embedded->geometry();
    return geometry.isEmpty() ? std::nullopt : std::optional(geometry);
}

}  // namespace tralio
