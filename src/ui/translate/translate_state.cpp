#include "ui/translate/translate_state.h"

#include <QStringBuilder>

#include <utility>

#include "common/clock.h"
#include "common/debug_log.h"
#include "common/excerpt.h"
#include "common/localized_error.h"
#include "common/on_change.h"
#include "common/text_limit.h"
#include "engine/ai_service.h"
#include "history/translation_history_store.h"
#include "hotkeys/pasteboard.h"
#include "ocr/ocr_error.h"
#include "ocr/ocr_service.h"
#include "ocr/screen_capture_service.h"
#include "speech/speech_service.h"
#include "state/app_settings.h"
#include "state/app_state.h"
#include "ui/translate/dropped_file.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

constexpr auto pendingTextDelay = 50ms;
constexpr auto copyFeedback = 1500ms;

const QString settingsUnreadable =
    u"Không đọc được cài đặt đã lưu, Tralio đang dùng cài đặt mặc định. "
    u"Hãy xem lại máy chủ dịch trong Cài đặt trước khi dịch."_s;
const QString settingsUnsaved =
    u"Không lưu được cài đặt và lịch sử lên đĩa, những gì thay đổi sẽ mất khi thoát Tralio."_s;

const QString keyLocked =
    u"API Key nằm trong kho khóa (keyring) của máy, chưa đọc được. Hãy mở khóa kho rồi dịch lại."_s;

const QString english = u"Tiếng Anh"_s;
const QString vietnamese = u"Tiếng Việt"_s;
const QString detect = u"Tự động phát hiện"_s;

}  // namespace

const QStringList& TranslateState::languages() {
    static const QStringList names{
        english, vietnamese, detect, u"Tiếng Nhật"_s, u"Tiếng Trung"_s, u"Tiếng Hàn"_s, u"Tiếng Pháp"_s};
    return names;
}

QStringList TranslateState::targetLanguages() {
    QStringList names = languages();
    names.removeAll(detect);
    return names;
}

TranslateState::TranslateState(Services services, Binding<QString> input)
    : inputText(std::move(input)),
      sourceLang(*this, english),
      targetLang(*this, vietnamese),
      m_services(services),
      m_mainView(inputText.owner) {}

void TranslateState::appear(QObject* panel) {
    AppState& appState = m_services.appState;
    onChange(
        appState, panel, [&appState] { return appState.translateTriggerId(); },
        [this] { checkAndTriggerPendingTranslation(); });
    onChange(
        appState, panel, [&appState] { return appState.openPopoverSignal(); },
        [this, panel] {
            m_services.clock.after(pendingTextDelay, panel, [this] { checkAndTriggerPendingTranslation(); });
        });
    SpeechService& speech = m_services.speech;
    onChange(
        speech, panel, [&speech] { return speech.failure(); },
        [this, &speech] {
            if (speech.failure())
                showError(speech.failure());
        });
    onChange(
        appState, panel, [&appState] { return appState.storeTrouble(); },
        [this] { Q_EMIT objectWillChange(); });
    checkAndTriggerPendingTranslation();
}

bool TranslateState::isRecognizing() const {
    return isOCROngoing() || m_services.appState.isReadingCapture();
}

QString TranslateState::notice() const {
    return m_services.appState.notice();
}

bool TranslateState::isResultStale() const {
    return !outputText().isEmpty() && (m_isResultAwaited || inputText.get().trimmed() != m_translatedText);
}

void TranslateState::showError(const std::optional<QString>& message) {
    ++m_errors;
    errorMessage = message;
}

std::optional<QString> TranslateState::message() const {
    const auto trouble = m_services.appState.storeTrouble();
    if (!trouble)
        return errorMessage();
    const QString told = *trouble == StoreTrouble::unreadable ? settingsUnreadable : settingsUnsaved;
    return errorMessage() ? told + u'\n' + *errorMessage() : told;
}

bool TranslateState::canTranslate() const {
    return !isTranslating() && !inputText.get().trimmed().isEmpty();
}

void TranslateState::performTranslate() {
    const QString text = inputText.get().trimmed();
    debugLog(u"TranslateView.performTranslate: starting translation for '" % excerpt(text) % u"'");
    if (text.isEmpty() || !admits(text))
        return;
    if (m_services.appState.isKeyAwaited()) {
        showError(keyLocked);
        m_services.appState.unlockKey();
        return;
    }
    isTranslating = true;
    showError(std::nullopt);
    m_isResultAwaited = true;
    m_currentTask = std::stop_source();
    translate(text, m_currentTask.get_token());
}

QCoro::Task<void> TranslateState::translate(QString text, std::stop_token stop) {
    const auto self = shared_from_this();
    QString result;
    std::optional<QString> failure;
    try {
        auto reply = m_services.ai.translate(text, sourceLang(), targetLang(), m_services.settings.tone(),
            m_services.settings.endpointSettings(), stop);
        result = co_await std::move(reply);
        debugLog(u"TranslateView.performTranslate: SUCCESS, result='" % excerpt(result) % u"'");
    } catch (const LocalizedError& error) {
        failure = error.errorDescription();
    }
    if (!m_mainView || stop.stop_requested())
        co_return;
    if (failure) {
        showError(failure);
        isTranslating = false;
        co_return;
    }
    m_translatedText = text;
    m_isResultAwaited = false;
    outputText = result;
    isTranslating = false;
    m_services.history.add(text, result, sourceLang(), targetLang(), m_services.settings.tone().rawValue());
}

void TranslateState::cancel() {
    m_currentTask.request_stop();
    isTranslating = false;
}

void TranslateState::swapLanguages() {
    const QString oldTarget = targetLang();
    targetLang = sourceLang() == detect ? vietnamese : sourceLang();
    sourceLang = oldTarget;
    if (outputText().isEmpty())
        return;
    const QString oldInput = inputText.get();
    inputText.set(outputText());
    m_translatedText = outputText().trimmed();  // each is the other's translation, in either direction
    outputText = oldInput;
}

void TranslateState::checkAndTriggerPendingTranslation() {
    AppState& appState = m_services.appState;
    const QString pending = appState.pendingTextToTranslate();
    debugLog(u"TranslateView.checkAndTriggerPendingTranslation: pendingText='" % excerpt(pending) % u"'");
    const QString text = pending.trimmed();
    if (text.isEmpty())
        return;
    appState.pendingTextToTranslate = QString();
    if (!admits(text))
        return;
    inputText.set(text);
    if (appState.storeTrouble())
        return;
    m_services.clock.after(
        pendingTextDelay, m_mainView, [self = shared_from_this()] { self->performTranslate(); });
}

void TranslateState::pasteFromClipboard(AutoTranslate autoTranslate) {
    const QString text = m_services.pasteboard.string().value_or(QString()).trimmed();
    if (!text.isEmpty())
        takeText(text, autoTranslate);
    else if (const QImage image = m_services.pasteboard.image(); !image.isNull())
        performOCR(image, autoTranslate);
}

QCoro::Task<void> TranslateState::captureScreenAndTranslate() {
    const auto self = shared_from_this();
    showError(std::nullopt);
    isOCROngoing = true;
    std::optional<QString> text;
    std::optional<QString> failure;
    try {
        AppState& appState = m_services.appState;
        auto capture = m_services.captures.captureInteractiveAndRecognize(
            [&appState] { appState.hidePopover(); }, [&appState] { appState.showPopover(); });
        text = co_await std::move(capture);
    } catch (const LocalizedError& error) {
        failure = error.errorDescription();
    }
    endRecognition(text.value_or(QString()), failure, AutoTranslate::yes);
}

QCoro::Task<void> TranslateState::performOCR(ImageSource image, AutoTranslate autoTranslate) {
    const auto self = shared_from_this();
    const std::optional<QString> earlierError = errorMessage();
    const bool isFile = std::holds_alternative<QUrl>(image);
    showError(std::nullopt);
    const qint64 errors = m_errors;
    isOCROngoing = true;
    QString text;
    std::optional<QString> failure;
    try {
        auto recognition =
            std::visit([this](auto source) { return m_services.ocr.recognizeText(std::move(source)); },
                std::move(image));
        text = co_await std::move(recognition);
    } catch (const OCRError& error) {
        // A file that turns out to be no picture changes nothing; what was told meanwhile stands.
        const bool isNoPicture = isFile && error.kind() == OCRError::Kind::invalidImage;
        if (!isNoPicture)
            failure = error.errorDescription();
        else if (errors == m_errors)
            failure = earlierError;
    }
    endRecognition(text, failure, autoTranslate);
}

void TranslateState::endRecognition(
    const QString& text, const std::optional<QString>& failure, AutoTranslate autoTranslate) {
    if (!m_mainView)
        return;
    isOCROngoing = false;
    if (failure)
        showError(failure);
    else
        takeText(text, autoTranslate);
}

void TranslateState::takeText(const QString& text, AutoTranslate autoTranslate) {
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty() || !admits(trimmed))
        return;
    inputText.set(trimmed);
    if (autoTranslate == AutoTranslate::yes)
        performTranslate();
}

bool TranslateState::admits(const QString& text) {
    if (!isTooLong(text))
        return true;
    showError(tooLongMessage(text));
    return false;
}

std::optional<QString> TranslateState::textToInsert(std::optional<QString> dropped) {
    auto text = dropped ? std::move(dropped) : m_services.pasteboard.string();
    return text && admits(*text) && admits(inputText.get() + *text) ? text : std::nullopt;
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
    if (item.image.isNull())
        return false;
    performOCR(item.image, AutoTranslate::yes);
    return true;
}

QCoro::Task<void> TranslateState::translateFile(QString path) {
    const auto self = shared_from_this();
    auto reading = readTextFile(std::move(path));
    const std::optional<QString> text = co_await std::move(reading);
    if (!m_mainView || !text)
        co_return;
    const QString trimmed = text->trimmed();
    if (!admits(trimmed))
        co_return;
    inputText.set(trimmed);
    performTranslate();
}

void TranslateState::toggleSpeech() {
    if (m_services.speech.isSpeaking())
        m_services.speech.stop();
    else
        m_services.speech.speak(outputText(), targetLang());
}

void TranslateState::copyResult() {
    if (outputText().isEmpty())
        return;
    m_services.pasteboard.setString(outputText());
    isCopied = true;
    m_services.clock.after(copyFeedback, this, [this] { isCopied = false; });
}

void TranslateState::clear() {
    inputText.set(QString());
    outputText = QString();
    showError(std::nullopt);
}

void TranslateState::dismissError() {
    showError(std::nullopt);
    if (m_services.appState.storeTrouble())
        m_services.appState.dismissStoreTrouble();
}

}  // namespace tralio
