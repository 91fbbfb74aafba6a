#pragma once

#include <QDeadlineTimer>
#include <QString>

#include <optional>

namespace tralio {

/// How long a mark counts as fresh, in milliseconds.
inline constexpr int freshTime = 1000;

/// What an application holds in PRIMARY, and what there is to say against it.
struct PrimaryText {
    QString text;

    /// The mouse has been pressed since, or a key. The mark is gone then, as a rule, but many toolkits leave
    /// its text here.
    bool mayBeGone = false;

    /// It was made just now: an application may not have told of it by other ways yet.
    bool isFresh = false;

    /// The application may be of those that give out passwords here, and nothing tells that this is none.
    bool mayBePassword = false;

    bool operator==(const PrimaryText&) const = default;
};

/// What the user marked last in any application, which most toolkits keep apart from the clipboard.
class PrimarySelection {
public:
    PrimarySelection() = default;
    PrimarySelection(const PrimarySelection&) = delete;
    PrimarySelection& operator=(const PrimarySelection&) = delete;
    virtual ~PrimarySelection() = default;

    /// What process `processId` holds; absent when another does: then it is a left-over of another
    /// application. Waits for the text until `deadline` at the most.
    [[nodiscard]] virtual std::optional<PrimaryText> textOf(qint32 processId, QDeadlineTimer deadline) = 0;
};

}  // namespace tralio
