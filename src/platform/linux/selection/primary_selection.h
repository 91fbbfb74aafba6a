#pragma once

#include <QDeadlineTimer>
#include <QString>

#include <optional>

namespace tralio {

/// What the user marked last in any application, which most toolkits keep apart from the clipboard.
class PrimarySelection {
public:
    PrimarySelection() = default;
    PrimarySelection(const PrimarySelection&) = delete;
    PrimarySelection& operator=(const PrimarySelection&) = delete;
    virtual ~PrimarySelection() = default;

    /// The marked text, if it is process `processId` that holds it: otherwise it is a left-over of another
    /// application. Waits for the answer until `deadline` at the most.
    [[nodiscard]] virtual std::optional<QString> textOf(qint32 processId, QDeadlineTimer deadline) = 0;
};

}  // namespace tralio
