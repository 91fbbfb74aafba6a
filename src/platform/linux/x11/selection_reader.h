#pragma once

#include <QDeadlineTimer>
#include <QString>

#include <optional>

#include "common/picture.h"
#include "platform/linux/x11/x11_connection.h"

namespace tralio {

/// The text of a selection (PRIMARY or CLIPBOARD), asked from its owner and awaited until `deadline` at the
/// most, also when it comes in many pieces. Absent when there is no owner, no text, or no answer in time.
/// Of a text that is too long (see `isTooLong`) only the beginning is read.
/// The owner must not be this process: it could not answer while it waits.
[[nodiscard]] std::optional<QString> readSelectionText(
    X11Connection& connection, xcb_atom_t selection, QDeadlineTimer deadline);

/// The picture of a selection, in the same way; null when there is none. Owners that say they have one may
/// need time to encode it: `pictureDeadline` is for them.
[[nodiscard]] Picture readSelectionPicture(
    X11Connection& connection, xcb_atom_t selection, QDeadlineTimer deadline, QDeadlineTimer pictureDeadline);

/// Whether the owner of a selection offers it as `target`; absent when it does not say so in time.
[[nodiscard]] std::optional<bool> selectionOffers(
    X11Connection& connection, xcb_atom_t selection, const char* target, QDeadlineTimer deadline);

}  // namespace tralio
