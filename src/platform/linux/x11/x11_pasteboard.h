#pragma once

#include "hotkeys/pasteboard.h"
#include "platform/linux/x11/x11_connection.h"

namespace tralio {

/// The CLIPBOARD selection. The server reports every change of its owner, which is what the count counts.
class X11Pasteboard final : public Pasteboard {
public:
    explicit X11Pasteboard(X11Connection& connection);

    qint64 changeCount() override;
    std::optional<QString> string() override;
    QImage image() override;
    bool isConcealed() override;
    void setString(const QString& text) override;

private:
    X11Connection& m_connection;
    xcb_atom_t m_clipboard;
    quint8 m_firstFixesEvent = 0;
    qint64 m_changeCount = 0;
};

}  // namespace tralio
