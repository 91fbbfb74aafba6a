#pragma once

#include "ocr/capture_tool.h"

namespace tralio {

/// The capture tool for wlroots compositors: the user selects a region with slurp, grim takes the picture.
class GrimCapture final : public CaptureTool {
public:
    [[nodiscard]] static bool isInstalled();
    [[nodiscard]] QCoro::Task<qint32> run(QString outputPath) override;
};

/// The capture tool of KDE.
class SpectacleCapture final : public CaptureTool {
public:
    [[nodiscard]] static bool isInstalled();
    [[nodiscard]] QCoro::Task<qint32> run(QString outputPath) override;
};

/// For sessions without a way to capture the screen.
class NoCapture final : public CaptureTool {
public:
    [[nodiscard]] QCoro::Task<qint32> run(QString outputPath) override;
};

}  // namespace tralio
