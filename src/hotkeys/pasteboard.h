#pragma once

#include <QString>
#include <qcorotask.h>

#include <optional>

#include "common/picture.h"

namespace tralio {

/// The MIME type that password managers add when they put a password on the clipboard.
inline constexpr auto concealedMimeType = "x-kde-passwordManagerHint";

/// The general clipboard. Used from the main thread. Reading blocks until the clipboard's owner has answered,
/// but for at most a quarter of a second.
class Pasteboard {
public:
    Pasteboard() = default;
    Pasteboard(const Pasteboard&) = delete;
    Pasteboard& operator=(const Pasteboard&) = delete;
    virtual ~Pasteboard() = default;

    /// Grows with every change of the clipboard by any program, even if the content stays equal.
    [[nodiscard]] virtual qint64 changeCount() = 0;

    /// The plain text on the clipboard; absent if there is none.
    [[nodiscard]] virtual std::optional<QString> string() = 0;

    /// The selected text that the middle button pastes; absent if there is none.
    [[nodiscard]] virtual std::optional<QString> selectedString() = 0;

    /// The picture on the clipboard; null if there is none. Does not block: its owner may need time to encode
    /// it. Of a picture over `largestPicture` bytes only the beginning is read.
    [[nodiscard]] virtual QCoro::Task<Picture> picture() = 0;

    /// Whether the owner has marked the content as a password or the like, which must not be passed on;
    /// absent if the owner does not answer in time.
    [[nodiscard]] virtual std::optional<bool> isConcealed() = 0;

    /// Replaces the clipboard's content.
    virtual void setString(const QString& text) = 0;

    /// The text that this program put on the clipboard last, by `setString` or by a Copy in one of its
    /// windows. Kept when another program replaces it there; empty at first.
    [[nodiscard]] virtual QString ownString() = 0;
};

}  // namespace tralio
