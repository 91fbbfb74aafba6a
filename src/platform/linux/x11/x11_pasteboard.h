#pragma once

#include <QClipboard>

#include "hotkeys/pasteboard.h"
#include "platform/linux/selection/own_copies.h"
#include "platform/linux/x11/x11_selection_watch.h"

namespace tralio {

/// The CLIPBOARD selection. The change count is the number of owner changes, which the server reports.
class X11Pasteboard final : public Pasteboard {
public:
    explicit X11Pasteboard(X11Connection& connection);

    qint64 changeCount() override { return m_watch.changeCount(); }
    std::optional<QString> string() override;
    std::optional<QString> selectedString() override;
    QCoro::Task<Picture> picture() override;
    std::optional<bool> isConcealed() override;
    void setString(const QString& text) override;
    QString ownString() override { return m_own.text(); }

private:
    /// Whether this program owns a selection, and has not just lost it.
    [[nodiscard]] bool isOwn(QClipboard::Mode mode, xcb_atom_t selection);
    [[nodiscard]] std::optional<QString> textOf(QClipboard::Mode mode, xcb_atom_t selection);

    X11Connection& m_connection;
    xcb_atom_t m_clipboard;
    X11SelectionWatch m_watch;
    OwnCopies m_own;
};

}  // namespace tralio
