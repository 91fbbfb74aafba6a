#include "platform/linux/x11/x11_pasteboard.h"

#include <QClipboard>
#include <QGuiApplication>

#include <xcb/xfixes.h>

#include "platform/linux/x11/selection_reader.h"

namespace tralio {
namespace {

constexpr int readLimit = 250;    // milliseconds
constexpr int imageLimit = 2000;  // milliseconds

}  // namespace

X11Pasteboard::X11Pasteboard(X11Connection& connection)
    : m_connection(connection), m_clipboard(connection.atom("CLIPBOARD")) {
    xcb_connection_t* xcb = m_connection.xcb();
    const xcb_query_extension_reply_t* fixes = xcb_get_extension_data(xcb, &xcb_xfixes_id);
    if (!fixes || !fixes->present)
        return;
    m_firstFixesEvent = fixes->first_event;
    const XcbPtr<xcb_xfixes_query_version_reply_t> version{
        xcb_xfixes_query_version_reply(xcb, xcb_xfixes_query_version(xcb, 1, 0), nullptr)};
    xcb_xfixes_select_selection_input(xcb, m_connection.window(), m_clipboard,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    m_connection.addEventHandler([this](const xcb_generic_event_t& event) {
        if ((event.response_type & 0x7f) != m_firstFixesEvent + XCB_XFIXES_SELECTION_NOTIFY)
            return;
        if (reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event).selection == m_clipboard)
            ++m_changeCount;
    });
}

qint64 X11Pasteboard::changeCount() {
    m_connection.sync();  // every change made up to now has been reported then
    m_connection.dispatchPending();
    return m_changeCount;
}

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
    return readSelectionImage(m_connection, m_clipboard, QDeadlineTimer(readLimit),
                              QDeadlineTimer(imageLimit));
}

bool X11Pasteboard::isConcealed() {
    return !QGuiApplication::clipboard()->ownsClipboard() &&
           selectionOffers(m_connection, m_clipboard, concealedMimeType, QDeadlineTimer(readLimit));
}

void X11Pasteboard::setString(const QString& text) {
    QGuiApplication::clipboard()->setText(text);
}

}  // namespace tralio
