#include "platform/linux/wayland/wayland_pasteboard.h"

#include <QClipboard>
#include <QGuiApplication>

#include <array>

#include "platform/linux/wayland/data_control.h"

namespace tralio {
namespace {

constexpr int readLimit = 250;    // milliseconds
constexpr int imageLimit = 2000;  // milliseconds

/// What keeps every pixel first.
constexpr std::array imageTypes{"image/png", "image/tiff", "image/bmp", "image/webp", "image/jpeg"};

constexpr auto clipboard = DataControl::Selection::clipboard;

}  // namespace

qint64 WaylandPasteboard::changeCount() {
    return m_dataControl.changeCount(clipboard);
}

bool WaylandPasteboard::belongsToToolkit() const {
    return !m_dataControl.ownsClipboard() && QGuiApplication::clipboard()->ownsClipboard();
}

std::optional<QString> WaylandPasteboard::string() {
    if (belongsToToolkit()) {
        const QString text = QGuiApplication::clipboard()->text();
        return text.isNull() ? std::nullopt : std::optional(text);
    }
    return m_dataControl.text(clipboard, QDeadlineTimer(readLimit));
}

QImage WaylandPasteboard::image() {
    if (belongsToToolkit())
        return QGuiApplication::clipboard()->image();
    const QStringList offered = m_dataControl.mimeTypes(clipboard);
    for (const char* type : imageTypes) {
        if (!offered.contains(QLatin1String(type)))
            continue;
        const auto bytes = m_dataControl.content(clipboard, QLatin1String(type), QDeadlineTimer(imageLimit));
        return bytes ? QImage::fromData(*bytes) : QImage();
    }
    return {};
}

bool WaylandPasteboard::isConcealed() {
    return !belongsToToolkit() &&
        m_dataControl.mimeTypes(clipboard).contains(QLatin1String(concealedMimeType));
}

void WaylandPasteboard::setString(const QString& text) {
    m_dataControl.setClipboard(text);
}

}  // namespace tralio
