#pragma once

#include "ocr/capture_tool.h"

namespace tralio {

/// The capture tool of wlroots compositors: slurp lets the user draw, grim takes the picture.
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

/// Where the session has no way to capture the screen.
class NoCapture final : public CaptureTool {
public:
    [[nodiscard]] QCoro::Task<qint32> run(QString outputPath) override;
};

}  // namespace tralio
