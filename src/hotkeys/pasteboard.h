#pragma once

#include <QString>
#include <qcorotask.h>

#include <optional>

#include "common/picture.h"

namespace tralio {

/// What password managers add to a password that they put on the clipboard.
inline constexpr auto concealedMimeType = "x-kde-passwordManagerHint";

/// The general clipboard. Used from the main thread; reading waits for the clipboard's owner, but never
/// longer than a quarter of a second.
class Pasteboard {
public:
    Pasteboard() = default;
    Pasteboard(const Pasteboard&) = delete;
    Pasteboard& operator=(const Pasteboard&) = delete;
    virtual ~Pasteboard() = default;

    /// Grows with every change of the clipboard, by whomever, also when the content stays equal.
    [[nodiscard]] virtual qint64 changeCount() = 0;

    /// The plain text on the clipboard; absent when it holds none.
    [[nodiscard]] virtual std::optional<QString> string() = 0;

    /// The selected text that the middle button pastes; absent where there is none.
    [[nodiscard]] virtual std::optional<QString> selectedString() = 0;

    /// The picture on the clipboard; null when it holds none. Its owner may need time to encode it, for which
    /// nothing here waits but the answer. Of more than `largestPicture` bytes only the first come.
    [[nodiscard]] virtual QCoro::Task<Picture> picture() = 0;

    /// Whether the content is a password or the like, which its owner marked as not to be passed on; absent
    /// when the owner does not say in time.
    [[nodiscard]] virtual std::optional<bool> isConcealed() = 0;

    /// Replaces the clipboard's content.
    virtual void setString(const QString& text) = 0;

    /// What this program put there last, by `setString` or by a Copy in one of its windows. It stays known
    /// when another program has taken it over. Empty before.
    [[nodiscard]] virtual QString ownString() = 0;
};

}  // namespace tralio
