#include "platform/linux/wayland/wayland_pasteboard.h"

#include <QClipboard>
#include <QGuiApplication>

#include "platform/linux/selection/clipboard_formats.h"
#include "platform/linux/wayland/data_control.h"

namespace tralio {
namespace {

constexpr int readLimit = 250;    // milliseconds
constexpr int imageLimit = 2000;  // milliseconds
constexpr qsizetype mostPictureBytes = 256 << 20;

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
    for (const PictureFormat& format : pictureFormats) {
        const QLatin1String name(format.name);
        if (!offered.contains(name))
            continue;
        const auto bytes =
            m_dataControl.content(clipboard, name, mostPictureBytes, QDeadlineTimer(imageLimit));
        if (QImage image =
                bytes && bytes->size() <= mostPictureBytes ? decodePicture(*bytes, format) : QImage();
            !image.isNull())
            return image;
    }
    return {};
}

bool WaylandPasteboard::isConcealed() {
    return !belongsToToolkit() &&
        m_dataControl.mimeTypes(clipboard).contains(QLatin1String(concealedMimeType));
}

void WaylandPasteboard::setString(const QString& text) {
    m_dataControl.setClipboard(text);
    m_own.note(text);
}

}  // namespace tralio
