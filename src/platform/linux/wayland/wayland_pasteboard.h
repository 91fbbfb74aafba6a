#pragma once

#include "hotkeys/pasteboard.h"
#include "platform/linux/selection/own_copies.h"

namespace tralio {

class DataControl;

/// The clipboard through the data-control protocol, independent of the focus.
class WaylandPasteboard final : public Pasteboard {
public:
    explicit WaylandPasteboard(DataControl& dataControl) : m_dataControl(dataControl) {}

    qint64 changeCount() override;
    std::optional<QString> string() override;
    std::optional<QString> selectedString() override;
    QCoro::Task<Picture> picture() override;
    std::optional<bool> isConcealed() override;
    void setString(const QString& text) override;
    QString ownString() override { return m_own.text(); }

private:
    /// Whether the content was copied in a window of ours: Qt has it, and could not answer while we wait for
    /// it.
    [[nodiscard]] bool belongsToToolkit() const;

    DataControl& m_dataControl;
    OwnCopies m_own;
};

}  // namespace tralio
