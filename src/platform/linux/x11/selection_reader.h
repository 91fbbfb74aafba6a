#pragma once

#include <QDeadlineTimer>
#include <QString>

#include <optional>

#include "common/picture.h"
#include "platform/linux/x11/x11_connection.h"

namespace tralio {

/// The text of a selection (PRIMARY or CLIPBOARD). Waits for its owner until `deadline` at most, also when
/// the text comes in many pieces. Absent if there is no owner, no text, or no answer in time. Of a text that
/// is too long (see `isTooLong`) only the beginning is read. The owner must not be this process: it could not
/// answer while it waits.
[[nodiscard]] std::optional<QString> readSelectionText(
    X11Connection& connection, xcb_atom_t selection, QDeadlineTimer deadline);

/// The picture of a selection, read in the same way; null if there is none. Owners that offer one may need
/// time to encode it: `pictureDeadline` is for them.
[[nodiscard]] Picture readSelectionPicture(
    X11Connection& connection, xcb_atom_t selection, QDeadlineTimer deadline, QDeadlineTimer pictureDeadline);

/// Whether the owner of a selection offers it as `target`; absent if it does not answer in time.
[[nodiscard]] std::optional<bool> selectionOffers(
    X11Connection& connection, xcb_atom_t selection, const char* target, QDeadlineTimer deadline);

}  // namespace tralio
