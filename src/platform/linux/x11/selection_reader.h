#pragma once

#include <QDeadlineTimer>
#include <QString>

#include <optional>

#include "platform/linux/x11/x11_connection.h"

namespace tralio {

/// The text of a selection (PRIMARY or CLIPBOARD), asked from its owner and awaited until `deadline` at the
/// most, also when it comes in many pieces. Absent when there is no owner, no text, or no answer in time.
/// The owner must not be this process: it could not answer while it waits.
[[nodiscard]] std::optional<QString> readSelectionText(X11Connection& connection, xcb_atom_t selection,
                                                       QDeadlineTimer deadline);

}  // namespace tralio
