#include "platform/linux/wayland/wayland_pasteboard.h"

#include <QClipboard>
#include <QGuiApplication>

#include "common/background.h"
#include "platform/linux/selection/clipboard_formats.h"
#include "platform/linux/wayland/data_control.h"
#include "platform/linux/wayland/data_pipe.h"

namespace tralio {
namespace {

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
    return m_dataControl.text(clipboard, QDeadlineTimer(clipboardTextLimit));
}

std::optional<QString> WaylandPasteboard::selectedString() {
    const QClipboard* own = QGuiApplication::clipboard();
    if (!own->ownsSelection())
        return m_dataControl.text(DataControl::Selection::primary, QDeadlineTimer(clipboardTextLimit));
    const QString text = own->text(QClipboard::Selection);
    return text.isNull() ? std::nullopt : std::optional(text);
}

QCoro::Task<Picture> WaylandPasteboard::picture() {
    const QString format = bestPictureFormat(m_dataControl.mimeTypes(clipboard));
    if (format.isEmpty() || belongsToToolkit())
        co_return Picture();  // only texts are copied
    const std::shared_ptr<DataPipeReader> pipe = m_dataControl.receive(clipboard, format);
    if (!pipe)
        co_return Picture();
    auto reading = inBackground([pipe]() -> Picture {
        const auto picture = std::make_shared<MemoryFile>();
        const bool isWhole = pipe->read(largestPicture, QDeadlineTimer(clipboardPictureLimit),
            [&picture](QByteArrayView piece) { picture->append(piece); });
        return isWhole ? picture : nullptr;
    });
    co_return co_await std::move(reading);
}

std::optional<bool> WaylandPasteboard::isConcealed() {
    return !belongsToToolkit() &&
        m_dataControl.mimeTypes(clipboard).contains(QLatin1String(concealedMimeType));
}

void WaylandPasteboard::setString(const QString& text) {
    m_dataControl.setClipboard(text);
    m_own.note(text);
}

}  // namespace tralio
