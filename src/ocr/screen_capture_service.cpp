#include "ocr/screen_capture_service.h"

#include <QFileInfo>
#include <QPromise>
#include <QScopeGuard>
#include <QUrl>
#include <QUuid>
#include <qcorofuture.h>

#include <chrono>
#include <memory>
#include <utility>

#include "common/clock.h"
#include "ocr/capture_tool.h"
#include "ocr/ocr_service.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// Time for the popover to leave the screen before it is frozen for the user to draw on.
constexpr auto delayBeforeCapture = 150ms;

/// What was there before and is still there after this time belongs to no program that lives: in a session
/// without a bus there may be several of us.
constexpr auto longestCapture = 10min;

const QString namePrefix = u"tralio_snip_"_s;

QString newFileName() {
    return namePrefix + QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper() + u".png"_s;
}

/// The files in `folder` whose names begin so. Not by a pattern of QDir's: the first regular expression costs
/// half a megabyte.
QStringList filesNamed(const QDir& folder, const QString& beginning) {
    QStringList names = folder.entryList(QDir::Files, QDir::NoSort);
    names.removeIf([&](const QString& name) { return !name.startsWith(beginning); });
    return names;
}

/// The picture, and what a tool that was killed has left of it under a name of its own.
void removeFilesOf(const QString& path) {
    const QFileInfo picture(path);
    if (!picture.fileName().startsWith(namePrefix))
        return;  // of no name at all every file would be one of its own
    QDir folder = picture.dir();
    for (const QString& name : filesNamed(folder, picture.fileName()))
        folder.remove(name);
}

}  // namespace

ScreenCaptureService::ScreenCaptureService(OCRService& ocr, CaptureTool& tool, Clock& clock, QString folder)
    : m_ocr(ocr), m_tool(tool), m_clock(clock), m_folder(std::move(folder)) {
    const QStringList found = filesNamed(m_folder, namePrefix);
    if (found.isEmpty())
        return;
    m_clock.after(longestCapture, this, [this, found] {
        for (const QString& name : found)
            QDir(m_folder).remove(name);
    });
}

ScreenCaptureService::~ScreenCaptureService() {
    if (m_isCapturing)
        removeFilesOf(m_picture);
}

QCoro::Task<std::optional<QString>> ScreenCaptureService::captureInteractiveAndRecognize(
    Callback onBeforeCapture, Callback onAfterCapture, Callback onRecognition, std::stop_token stop,
    LinesRead linesRead) {
    if (std::exchange(m_isCapturing, true))
        co_return std::nullopt;
    const QString path = m_picture = QDir(m_folder).filePath(newFileName());
    m_isDrawing = true;
    const QPointer<ScreenCaptureService> self = this;
    const auto tidyUp = qScopeGuard([&] {
        removeFilesOf(path);
        if (self)
            self->m_isCapturing = false;
    });

    if (onBeforeCapture)
        onBeforeCapture();
    m_ocr.prepare();
    co_await pause();
    if (!self)
        co_return std::nullopt;  // it goes on at a later turn
    const qint32 status = co_await m_tool.run(path);
    if (!self)
        co_return std::nullopt;
    m_isDrawing = false;
    if (onAfterCapture)
        onAfterCapture();
    runWaiting();

    if (status != 0 || QFileInfo(path).size() < 1)
        co_return std::nullopt;
    if (onRecognition)
        onRecognition();
    co_return co_await m_ocr.recognizeText(QUrl::fromLocalFile(path), std::move(stop), std::move(linesRead));
}

bool ScreenCaptureService::isDrawing() const {
    return m_isDrawing && !m_tool.isOrdinaryWindow();
}

void ScreenCaptureService::onceDrawn(QObject* context, Callback action) {
    if (isDrawing())
        m_waiting.emplace_back(context, std::move(action));
    else
        action();
}

void ScreenCaptureService::runWaiting() {
    for (const auto& [context, action] : std::exchange(m_waiting, {}))
        if (context)
            action();
}

QCoro::Task<> ScreenCaptureService::pause() {
    auto passed = std::make_shared<QPromise<void>>();
    passed->start();
    m_clock.after(delayBeforeCapture, this, [passed] { passed->finish(); });
    co_await passed->future();
}

}  // namespace tralio
