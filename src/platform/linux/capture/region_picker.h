#pragma once

#include "ocr/capture_tool.h"

namespace tralio {

/// The capture tool on X11: the helper program that lets the user select a region on the screen.
class RegionPicker final : public CaptureTool {
public:
    /// `program` is the path of the helper.
    explicit RegionPicker(QString program);

    [[nodiscard]] QCoro::Task<qint32> run(QString outputPath) override;

private:
    QString m_program;
};

}  // namespace tralio
