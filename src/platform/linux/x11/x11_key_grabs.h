#pragma once

#include <vector>

#include "platform/linux/x11/x11_connection.h"

namespace tralio {

/// Passive grabs of keys on the root window: a press is sent to this connection, whatever has the focus.
class X11KeyGrabs final {
public:
    explicit X11KeyGrabs(X11Connection& connection) : m_connection(connection) {}

    /// Grabs a key in these states of the modifiers. Returns whether all of them are ours now; the others
    /// belong to another program.
    bool take(quint8 keyCode, const std::vector<quint16>& states);
    void giveUp(quint8 keyCode, const std::vector<quint16>& states);

private:
    X11Connection& m_connection;
};

}  // namespace tralio
