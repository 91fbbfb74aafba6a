#include "platform/linux/desktop/unavailable_desktop.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include "platform/linux/desktop/desktop_settings.h"
#include "platform/linux/selection/clipboard_formats.h"

namespace tralio {

EventHandlerRef UnavailableDesktop::HotKeys::installEventHandler(EventHandler /*handler*/) {
    return EventHandlerRef{};
}

void UnavailableDesktop::HotKeys::installStatusHandler(StatusHandler /*handler*/) {}

HotKeyPlatform::Registration UnavailableDesktop::HotKeys::registerHotKey(
    const KeyCombination& /*combination*/, HotKeyID /*id*/) {
    return {HotKeyStatus::unavailable, std::nullopt};
}

void UnavailableDesktop::HotKeys::unregisterHotKey(HotKeyRef /*ref*/) {}

void UnavailableDesktop::NoWorkspace::openURL(const QUrl& url) {
    openDesktopURL(url);
}

std::unique_ptr<AccessibleElement> UnavailableDesktop::NoAccessibility::focusedElement(qint32 /*processId*/) {
    return nullptr;
}

std::unique_ptr<AccessibleElement> UnavailableDesktop::NoAccessibility::menuBar(qint32 /*processId*/) {
    return nullptr;
}

std::optional<QString> UnavailableDesktop::NoScripts::execute(const QString& /*source*/) {
    return std::nullopt;
}

void UnavailableDesktop::NoScripts::launch(const QString& /*executable*/, const QStringList& /*arguments*/) {}

void UnavailableDesktop::NoKeyEvents::post(const KeyEvent& /*event*/) {}

void UnavailableDesktop::NoKeyEvents::postToProcess(qint32 /*processId*/, const KeyEvent& /*event*/) {}

ToolkitPasteboard::ToolkitPasteboard() {
    QObject::connect(
        QGuiApplication::clipboard(), &QClipboard::dataChanged, &m_context, [this] { ++m_changeCount; });
}

static std::optional<QString> textOf(QClipboard::Mode mode) {
    const QMimeData* content = QGuiApplication::clipboard()->mimeData(mode);
    if (content == nullptr)
        return std::nullopt;
    for (const TextFormat& format : textFormats)
        if (const QString name = QLatin1String(format.name); content->hasFormat(name))
            return decodeText(content->data(name), format.encoding);
    return std::nullopt;
}

std::optional<QString> ToolkitPasteboard::string() {
    return textOf(QClipboard::Clipboard);
}

std::optional<QString> ToolkitPasteboard::selectedString() {
    return textOf(QClipboard::Selection);
}

QCoro::Task<Picture> ToolkitPasteboard::picture() {
    const QMimeData* content = QGuiApplication::clipboard()->mimeData();
    if (!content)
        co_return Picture();
    const QString format = bestPictureFormat(content->formats());
    if (format.isEmpty())
        co_return Picture();
    co_return Picture(std::make_shared<MemoryFile>(content->data(format)));
}

std::optional<bool> ToolkitPasteboard::isConcealed() {
    const QMimeData* content = QGuiApplication::clipboard()->mimeData();
    return content && content->hasFormat(QLatin1String(concealedMimeType));
}

void ToolkitPasteboard::setString(const QString& text) {
    QGuiApplication::clipboard()->setText(text);
}

}  // namespace tralio
