#pragma once

#include "hotkeys/pasteboard.h"

namespace tralio {

class DataControl;

/// The clipboard through the data-control protocol, whoever has the focus.
class WaylandPasteboard final : public Pasteboard {
public:
    explicit WaylandPasteboard(DataControl& dataControl) : m_dataControl(dataControl) {}

    qint64 changeCount() override;
    std::optional<QString> string() override;
    QImage image() override;
    bool isConcealed() override;
    void setString(const QString& text) override;

private:
    /// Whether the content was copied in our own window: the toolkit has it, and could not answer while we
    /// wait.
    [[nodiscard]] bool belongsToToolkit() const;

    DataControl& m_dataControl;
};

}  // namespace tralio
