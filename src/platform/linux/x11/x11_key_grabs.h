#pragma once

#include <vector>

#include "platform/linux/x11/x11_connection.h"

namespace tralio {

/// Passive grabs of keys on the root window: a press goes to this connection, whoever has the focus.
class X11KeyGrabs final {
public:
    explicit X11KeyGrabs(X11Connection& connection) : m_connection(connection) {}

    /// Takes a key in these states of the modifiers. Answers whether all of them are ours now; the others are
    /// another program's.
    bool take(quint8 keyCode, const std::vector<quint16>& states);
    void giveUp(quint8 keyCode, const std::vector<quint16>& states);

private:
    X11Connection& m_connection;
};

}  // namespace tralio
