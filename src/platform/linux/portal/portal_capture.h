#pragma once

#include "ocr/capture_tool.h"
#include "platform/linux/portal/portal.h"

namespace tralio {

/// The capture tool as the desktop's own dialog, through the Screenshot portal.
class PortalCapture final : public CaptureTool {
public:
    static constexpr auto interface = "org.freedesktop.portal.Screenshot";

    explicit PortalCapture(Portal& portal) : m_portal(portal) {}

    /// A desktop that has not answered after two minutes counts as cancelled.
    [[nodiscard]] QCoro::Task<qint32> run(QString outputPath) override;

    [[nodiscard]] bool isOrdinaryWindow() const override { return true; }

private:
    Portal& m_portal;
};

}  // namespace tralio
