#pragma once

#include <QDeadlineTimer>
#include <QString>

#include <optional>

namespace tralio {

/// How long a selection counts as fresh, in milliseconds.
inline constexpr int freshTime = 1000;

/// The text that an application holds in PRIMARY, and the doubts about it.
struct PrimaryText {
    QString text;

    /// The mouse, or a key, has been pressed since. Usually that has cleared the selection, but many toolkits
    /// leave its text in PRIMARY.
    bool mayBeGone = false;

    /// It was selected just now, so the application may not have reported it in other ways yet.
    bool isFresh = false;

    /// The application may be one that gives passwords to PRIMARY, and nothing shows that this is none.
    bool mayBePassword = false;

    bool operator==(const PrimaryText&) const = default;
};

/// The text that the user selected last in any application. Most toolkits keep it apart from the clipboard.
class PrimarySelection {
public:
    PrimarySelection() = default;
    PrimarySelection(const PrimarySelection&) = delete;
    PrimarySelection& operator=(const PrimarySelection&) = delete;
    virtual ~PrimarySelection() = default;

    /// The text that process `processId` holds; absent if another process owns PRIMARY: then it is left over
    /// from another application. Waits for the text until `deadline` at most.
    [[nodiscard]] virtual std::optional<PrimaryText> textOf(qint32 processId, QDeadlineTimer deadline) = 0;
};

}  // namespace tralio
