#pragma once

#include <QString>

#include <optional>

namespace tralio {

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

    /// Replaces the clipboard's content.
    virtual void setString(const QString& text) = 0;
};

}  // namespace tralio
