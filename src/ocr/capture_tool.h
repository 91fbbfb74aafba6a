#pragma once

#include <QString>
#include <qcorotask.h>

namespace tralio {

/// The program that lets the user draw a rectangle on the screen. Used from the main thread, where callers
/// resume.
class CaptureTool {
public:
    /// The status that stands for a program that could not be started.
    static constexpr qint32 notStarted = -1;

    CaptureTool() = default;
    CaptureTool(const CaptureTool&) = delete;
    CaptureTool& operator=(const CaptureTool&) = delete;
    virtual ~CaptureTool() = default;

    /// Runs the program until the user has chosen, however long that takes, and answers with its exit status.
    /// The chosen region is a PNG at `outputPath`; a user who cancels leaves no file there. Never fails.
    [[nodiscard]] virtual QCoro::Task<qint32> run(QString outputPath) = 0;

    /// Whether the user may leave it open and go on working, since it may be a window like others and not one
    /// all over the screen.
    [[nodiscard]] virtual bool isOrdinaryWindow() const { return false; }
};

}  // namespace tralio
