#pragma once

#include <QDir>
#include <QObject>
#include <QPointer>
#include <QString>
#include <qcorotask.h>

#include <functional>
#include <optional>
#include <stop_token>
#include <utility>
#include <vector>

#include "ocr/text_recognizer.h"

namespace tralio {

class CaptureTool;
class Clock;
class OCRService;

/// Lets the user draw a rectangle anywhere on the screen and reads the text inside it.
///
/// One capture runs at a time. What it was given outlives the service, and the service every capture that it
/// began. Used from the main thread; callbacks run and callers resume there.
class ScreenCaptureService final : public QObject {
public:
    using Callback = std::function<void()>;

    /// Pictures stand in `folder` for as long as they are needed. What a program that was killed left there
    /// is removed in time.
    ScreenCaptureService(OCRService& ocr, CaptureTool& tool, Clock& clock, QString folder = QDir::tempPath());
    /// The picture of a capture under way goes with it.
    ~ScreenCaptureService() override;

    /// The text of the region, or nothing when the user cancelled; at once nothing, without a callback, while
    /// another capture or its recognition is under way. The first two callbacks run once each, just before
    /// and just after the user draws, and the third after them if there is a picture to read. Fails with an
    /// `OCRError`, also once `stop` ends the recognition. The picture is gone when this completes.
    [[nodiscard]] QCoro::Task<std::optional<QString>> captureInteractiveAndRecognize(
        Callback onBeforeCapture = {}, Callback onAfterCapture = {}, Callback onRecognition = {},
        std::stop_token stop = {}, LinesRead linesRead = {});

    /// Whether the user is about to draw, or draws, all over the screen.
    [[nodiscard]] bool isDrawing() const;
    /// Whether what was drawn is being read; until that has ended, no other capture begins.
    [[nodiscard]] bool isReading() const { return m_isCapturing && !m_isDrawing; }

    /// Runs `action` at once, or where the user is about to draw or draws, just after: on the screen that is
    /// drawn on nothing may open. Not once `context` has gone.
    void onceDrawn(QObject* context, Callback action);

private:
    [[nodiscard]] QCoro::Task<> pause();
    void runWaiting();

    OCRService& m_ocr;
    CaptureTool& m_tool;
    Clock& m_clock;
    QString m_folder;
    QString m_picture;  ///< of the capture under way
    bool m_isCapturing = false;
    bool m_isDrawing = false;
    std::vector<std::pair<QPointer<QObject>, Callback>> m_waiting;
};

}  // namespace tralio
