#include "platform/linux/x11/x11_pasteboard.h"

#include <QGuiApplication>

#include "common/background.h"
#include "platform/linux/selection/clipboard_formats.h"
#include "platform/linux/x11/selection_reader.h"

namespace tralio {
namespace {

/// Runs on another thread, with a connection of its own.
Picture readPicture() {
    const auto connection = X11Connection::open();
    return connection ? readSelectionPicture(*connection, connection->atom("CLIPBOARD"),
                            QDeadlineTimer(clipboardTextLimit), QDeadlineTimer(clipboardPictureLimit))
                      : nullptr;
}

}  // namespace

X11Pasteboard::X11Pasteboard(X11Connection& connection)
    : m_connection(connection), m_clipboard(connection.atom("CLIPBOARD")), m_watch(connection, m_clipboard) {}

std::optional<QString> X11Pasteboard::string() {
    return textOf(QClipboard::Clipboard, m_clipboard);
}

std::optional<QString> X11Pasteboard::selectedString() {
    return textOf(QClipboard::Selection, XCB_ATOM_PRIMARY);
}

bool X11Pasteboard::isOwn(QClipboard::Mode mode, xcb_atom_t selection) {
    const QClipboard* own = QGuiApplication::clipboard();
    if (!(mode == QClipboard::Selection ? own->ownsSelection() : own->ownsClipboard()))
        return false;
    // Qt may not have read yet that another program has taken it over.
    const XcbPtr<xcb_get_selection_owner_reply_t> owner{xcb_get_selection_owner_reply(
        m_connection.xcb(), xcb_get_selection_owner(m_connection.xcb(), selection), nullptr)};
    const auto process = owner ? m_connection.processOf(owner->owner) : std::nullopt;
    return !process || *process == QCoreApplication::applicationPid();
}

std::optional<QString> X11Pasteboard::textOf(QClipboard::Mode mode, xcb_atom_t selection) {
    if (!isOwn(mode, selection))
        return readSelectionText(m_connection, selection, QDeadlineTimer(clipboardTextLimit));
    const QString text = QGuiApplication::clipboard()->text(mode);
    return text.isNull() ? std::nullopt : std::optional(text);
}

QCoro::Task<Picture> X11Pasteboard::picture() {
    if (isOwn(QClipboard::Clipboard, m_clipboard))
        co_return Picture();  // only texts are copied
    auto reading = inBackground(&readPicture);
    co_return co_await std::move(reading);
}

std::optional<bool> X11Pasteboard::isConcealed() {
    if (isOwn(QClipboard::Clipboard, m_clipboard))
        return false;
    return selectionOffers(m_connection, m_clipboard, concealedMimeType, QDeadlineTimer(clipboardTextLimit));
}

void X11Pasteboard::setString(const QString& text) {
    QGuiApplication::clipboard()->setText(text);
}

}  // namespace tralio
