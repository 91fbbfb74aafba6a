#include "platform/linux/x11/x11_pasteboard.h"

#include <QClipboard>
#include <QGuiApplication>

#include "platform/linux/x11/selection_reader.h"

namespace tralio {
namespace {

constexpr int readLimit = 250;    // milliseconds
constexpr int imageLimit = 2000;  // milliseconds

}  // namespace

X11Pasteboard::X11Pasteboard(X11Connection& connection)
    : m_connection(connection), m_clipboard(connection.atom("CLIPBOARD")), m_watch(connection, m_clipboard) {}

std::optional<QString> X11Pasteboard::string() {
    const QClipboard* own = QGuiApplication::clipboard();
    if (own->ownsClipboard()) {
        const QString text = own->text();
        return text.isNull() ? std::nullopt : std::optional(text);
    }
    return readSelectionText(m_connection, m_clipboard, QDeadlineTimer(readLimit));
}

QImage X11Pasteboard::image() {
    if (QGuiApplication::clipboard()->ownsClipboard())
        return QGuiApplication::clipboard()->image();
    return readSelectionImage(
        m_connection, m_clipboard, QDeadlineTimer(readLimit), QDeadlineTimer(imageLimit));
}

bool X11Pasteboard::isConcealed() {
    return !QGuiApplication::clipboard()->ownsClipboard() &&
        selectionOffers(m_connection, m_clipboard, concealedMimeType, QDeadlineTimer(readLimit));
}

void X11Pasteboard::setString(const QString& text) {
    QGuiApplication::clipboard()->setText(text);
}

}  // namespace tralio
