// The other half of TranslateState: texts that are not typed, from the clipboard, the screen, pictures and
// files.
#include <utility>
#include <variant>

#include "common/localized_error.h"
#include "common/text_limit.h"
#include "hotkeys/pasteboard.h"
#include "ocr/ocr_error.h"
#include "ocr/ocr_service.h"
#include "ocr/screen_capture_service.h"
#include "state/app_state.h"
#include "ui/translate/dropped_file.h"
#include "ui/translate/translate_state.h"

namespace tralio {
namespace {

LinesRead counting(AppState& appState, const std::stop_token& stop) {
    return [&appState, stop](qsizetype lines) {
        if (!stop.stop_requested())
            appState.linesRead = lines;
    };
}

}  // namespace

void TranslateState::pasteFromClipboard(AutoTranslate autoTranslate) {
    m_needs.appState.stopAwaiting();
    const QString text = m_needs.pasteboard.string().value_or(QString()).trimmed();
    if (!text.isEmpty())
        takeText(text, autoTranslate);
    else
        pastePicture(autoTranslate);
}

QCoro::Task<void> TranslateState::pastePicture(AutoTranslate autoTranslate) {
    const auto self = shared_from_this();
    const std::stop_source awaited;
    m_needs.appState.beginAwaiting(AppState::Awaited::picture, awaited);
    auto reading = m_needs.pasteboard.picture();
    const Picture picture = co_await std::move(reading);
    m_needs.appState.endAwaiting(awaited.get_token());
    if (m_mainState && !awaited.stop_requested() && picture)
        performOCR(picture, autoTranslate);
}

void TranslateState::countRecognitions(int change) {
    m_recognitions += change;
    isOCROngoing = m_recognitions > 0;
}

QCoro::Task<void> TranslateState::captureScreenAndTranslate() {
    const auto self = shared_from_this();
    if (m_needs.captures.isReading())
        co_return;  // one is drawn at a time, and read to its end or until it is cancelled
    showError(std::nullopt);
    const std::stop_source reading;
    const std::stop_token stop = reading.get_token();
    countRecognitions(1);
    std::optional<QString> text;
    std::optional<QString> failure;
    try {
        AppState& appState = m_needs.appState;
        auto capture = m_needs.captures.captureInteractiveAndRecognize(
            [&appState] { appState.hidePopover(); }, [&appState] { appState.showPopover(); },
            [&appState, reading] { appState.beginReading(reading); }, stop, counting(appState, stop));
        text = co_await std::move(capture);
    } catch (const LocalizedError& error) {
        failure = error.errorDescription();
    }
    endRecognition(stop, text.value_or(QString()), failure, AutoTranslate::yes);
}

QCoro::Task<void> TranslateState::performOCR(ImageSource image, AutoTranslate autoTranslate) {
    const auto self = shared_from_this();
    // Remembers the error shown before the first of several simultaneous recognitions, or a later one of
    // another cause.
    if (m_recognitions == 0 || m_errors != m_errorsWhileReading)
        m_errorBeforeReading = errorMessage();
    const bool isFile = std::holds_alternative<QUrl>(image);
    showError(std::nullopt);
    m_errorsWhileReading = m_errors;
    const std::stop_source reading;
    const std::stop_token stop = reading.get_token();
    m_needs.appState.beginReading(reading);
    countRecognitions(1);
    QString text;
    std::optional<QString> failure;
    try {
        auto recognition = std::visit(
            [&](auto source) {
                return m_needs.ocr.recognizeText(std::move(source), stop, counting(m_needs.appState, stop));
            },
            std::move(image));
        text = co_await std::move(recognition);
    } catch (const OCRError& error) {
        // A dropped file that turns out to be no picture restores the former error, unless another was shown
        // meanwhile.
        const bool isNoPicture = isFile && error.kind() == OCRError::Kind::invalidImage;
        if (!isNoPicture)
            failure = error.errorDescription();
        else if (m_panel && m_errors == m_errorsWhileReading)
            failure = m_errorBeforeReading;
    }
    endRecognition(stop, text, failure, autoTranslate);
}

void TranslateState::endRecognition(const std::stop_token& stop, const QString& text,
    const std::optional<QString>& failure, AutoTranslate autoTranslate) {
    m_needs.appState.endReading(stop);
    if (!m_mainState)
        return;
    countRecognitions(-1);
    if (stop.stop_requested())
        return;
    if (failure)
        tell(*failure);
    else
        takeText(text, autoTranslate);
}

bool TranslateState::isReplaced() const {
    return !m_panel && m_needs.appState.translatePanel;
}

void TranslateState::takeText(const QString& text, AutoTranslate autoTranslate) {
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty())
        return;
    if (isReplaced()) {
        if (autoTranslate == AutoTranslate::yes)
            m_needs.appState.requestTranslation(trimmed);
        else
            m_needs.appState.offerTranslation(trimmed);
        return;
    }
    if (!admits(trimmed))
        return;
    m_needs.appState.stopReading();
    inputText.set(trimmed);
    if (autoTranslate == AutoTranslate::yes)
        performTranslate();
}

bool TranslateState::admits(const QString& text) {
    if (!isTooLong(text))
        return true;
    tell(tooLongMessage(text));
    return false;
}

std::optional<QString> TranslateState::textToInsert(
    const QMimeData& source, TextOrigin origin, const QString& kept) {
    std::optional<QString> text = textOf(source, origin, m_needs.pasteboard);
    if (!text || !admits(*text) || !admits(kept + *text))
        return std::nullopt;
    m_needs.appState.stopReading();
    return text;
}

bool TranslateState::handleDrop(const QList<DroppedItem>& items) {
    if (items.isEmpty())
        return false;
    const DroppedItem& item = items.first();
    if (item.fileURL) {
        switch (droppedFileKind(*item.fileURL)) {
            case DroppedFileKind::image:
                performOCR(*item.fileURL, AutoTranslate::yes);
                break;
            case DroppedFileKind::text:
                translateFile(item.fileURL->toLocalFile());
                break;
            case DroppedFileKind::other:
                break;
        }
        return true;
    }
    if (!item.picture)
        return false;
    performOCR(item.picture, AutoTranslate::yes);
    return true;
}

QCoro::Task<void> TranslateState::translateFile(QString path) {
    const auto self = shared_from_this();
    const std::stop_source awaited;
    m_needs.appState.beginAwaiting(AppState::Awaited::textFile, awaited);
    auto reading = readTextFile(std::move(path));
    const std::optional<QString> text = co_await std::move(reading);
    m_needs.appState.endAwaiting(awaited.get_token());
    if (!m_mainState || !text || awaited.stop_requested())
        co_return;
    const QString trimmed = text->trimmed();
    if (isReplaced()) {
        m_needs.appState.requestTranslation(trimmed);
        co_return;
    }
    if (!admits(trimmed))
        co_return;
    m_needs.appState.stopReading();
    inputText.set(trimmed);
    performTranslate();
}

}  // namespace tralio
