#pragma once

#include <functional>

#include "platform/linux/x11/x11_connection.h"

namespace tralio {

/// Counts the changes of a selection's owner, which the server reports.
class X11SelectionWatch final {
public:
    /// Called with the server's time of the change.
    using Changed = std::function<void(xcb_timestamp_t)>;

    /// `changed` may be empty; it is called from the connection's event delivery.
    X11SelectionWatch(X11Connection& connection, xcb_atom_t selection, Changed changed = {});

    /// The number of changes up to now.
    [[nodiscard]] qint64 changeCount();

private:
    X11Connection& m_connection;
    qint64 m_changeCount = 0;
};

}  // namespace tralio
