#pragma once

#include "ocr/capture_tool.h"

namespace tralio {

/// The capture tool as the helper program that draws the selection on the screen.
class RegionPicker final : public CaptureTool {
public:
    /// `program` is the helper's path.
    explicit RegionPicker(QString program);

    [[nodiscard]] QCoro::Task<qint32> run(QString outputPath) override;

private:
    QString m_program;
};

}  // namespace tralio
