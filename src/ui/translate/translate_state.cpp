#include "ui/translate/translate_state.h"

#include <QStringBuilder>

#include <utility>

#include "common/debug_log.h"
#include "common/excerpt.h"
#include "common/localized_error.h"
#include "common/on_change.h"
#include "common/text_limit.h"
#include "engine/ai_service.h"
#include "history/translation_history_store.h"
#include "hotkeys/pasteboard.h"
#include "speech/speech_service.h"
#include "state/app_settings.h"
#include "state/app_state.h"

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
    u"API Key nằm trong kho khóa (keyring) của máy, chưa đọc được. "
    u"Hãy mở khóa kho rồi dịch lại, hoặc nhập lại API Key trong Cài đặt."_s;

const QString keyExposed =
    u"Địa chỉ máy chủ không mã hóa (http), API Key sẽ lộ trên mạng. Hãy xác nhận trong Cài đặt."_s;

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

namespace {

/// As the editors store it: every line break is one line feed.
QString withLineFeeds(QString text) {
    return text.replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n').replace(QChar::ParagraphSeparator, u'\n');
}

}  // namespace

TranslateState::TranslateState(Dependencies needs, Binding<QString> input)
    : inputText(std::move(input)),
      sourceLang(*this, english),
      targetLang(*this, vietnamese),
      m_needs(needs),
      m_mainState(inputText.owner) {}

void TranslateState::appear(QObject* panel) {
    AppState& appState = m_needs.appState;
    m_panel = panel;
    appState.translatePanel = panel;
    onChange(
        appState, panel, [&appState] { return appState.translateTriggerId(); },
        [this] { checkAndTriggerPendingTranslation(); });
    onChange(
        appState, panel, [&appState] { return appState.openPopoverSignal(); },
        [this, panel] {
            m_needs.clock.after(pendingTextDelay, panel, [this] { checkAndTriggerPendingTranslation(); });
        });
    // Shows each failure once, including one from while another tab was shown.
    const auto tell = [this, panel](ObservableObject& teller, Observable<std::optional<QString>>& failure) {
        const auto tellFailure = [this, &failure] {
            const std::optional<QString> told = failure();
            if (!told)
                return;
            failure = std::nullopt;
            showError(told);
        };
        onChange(
            teller, panel, [&failure] { return failure(); }, tellFailure);
        tellFailure();
    };
    tell(m_needs.speech, m_needs.speech.failure);
    tell(appState, appState.readingFailure);
    onChange(
        appState, panel, [&appState] { return appState.storeTrouble(); },
        [this] { Q_EMIT objectWillChange(); });
    checkAndTriggerPendingTranslation();
}

bool TranslateState::isRecognizing() const {
    const AppState& appState = m_needs.appState;
    return isOCROngoing() || appState.awaited() == AppState::Awaited::picture || appState.isReading();
}

bool TranslateState::canEndRecognition() const {
    return m_needs.appState.awaited() || m_needs.appState.isReading();
}

qsizetype TranslateState::linesRead() const {
    return m_needs.appState.linesRead();
}

QString TranslateState::notice() const {
    return m_needs.appState.notice();
}

bool TranslateState::isResultStale() const {
    return !outputText().isEmpty() &&
        (m_isResultAwaited || withLineFeeds(inputText.get().trimmed()) != withLineFeeds(m_translatedText));
}

void TranslateState::showError(const std::optional<QString>& message) {
    ++m_errors;
    errorMessage = message;
    Q_EMIT objectWillChange();
}

void TranslateState::tell(const QString& failure) {
    if (m_panel)
        showError(failure);
    else
        m_needs.appState.readingFailure = failure;
}

std::optional<QString> TranslateState::message() const {
    const auto trouble = m_needs.appState.storeTrouble();
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
    if (m_needs.appState.isKeyAwaited() && m_needs.settings.needsKey()) {
        tell(keyLocked);
        m_needs.appState.unlockKey();
        return;
    }
    if (m_needs.settings.wouldExposeKey()) {
        tell(keyExposed);
        return;
    }
    m_needs.appState.notice = QString();
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
        auto reply = m_needs.ai.translate(text, sourceLang(), targetLang(), m_needs.settings.tone(),
            m_needs.settings.endpointSettings(), stop);
        result = co_await std::move(reply);
        if (isTooLong(result))
            throw LocalizedError(tooLongTranslationMessage(result));
        debugLog(u"TranslateView.performTranslate: SUCCESS, result='" % excerpt(result) % u"'");
    } catch (const LocalizedError& error) {
        failure = error.errorDescription();
        // Only 30 characters are logged: the rest may come from the server and quote the user's text.
        debugLog(u"TranslateView.performTranslate: FAILED, error='" % excerpt(*failure) % u"'");
    }
    if (!m_mainState || stop.stop_requested())
        co_return;
    if (failure) {
        showError(failure);
        isTranslating = false;
        co_return;
    }
    m_translatedText = text;
    if (stop == m_currentTask.get_token() || !isTranslating())
        m_isResultAwaited = false;
    showResult(result);
    isTranslating = false;
    m_needs.history.add(text, result, sourceLang(), targetLang(), m_needs.settings.tone().rawValue());
}

void TranslateState::showResult(const QString& text) {
    outputText = text;
    isCopied = false;
}

void TranslateState::cancel() {
    m_needs.appState.stopReading();
    m_currentTask.request_stop();
    isTranslating = false;
}

void TranslateState::swapLanguages() {
    const QString oldTarget = targetLang();
    targetLang = sourceLang() == detect ? vietnamese : sourceLang();
    sourceLang = oldTarget;
    if (outputText().isEmpty())
        return;
    const bool isPair = !isResultStale();
    const QString oldInput = inputText.get();
    inputText.set(outputText());
    if (isPair)
        // Each text is the translation of the other, in either direction.
        m_translatedText = outputText().trimmed();
    showResult(oldInput);
}

void TranslateState::checkAndTriggerPendingTranslation() {
    AppState& appState = m_needs.appState;
    const QString pending = appState.pendingTextToTranslate();
    // What is only offered may be a password.
    debugLog(u"TranslateView.checkAndTriggerPendingTranslation: pendingText='" %
        (appState.isPendingTextWanted ? excerpt(pending) : QString()) % u"'");
    const QString text = pending.trimmed();
    if (text.isEmpty())
        return;
    appState.pendingTextToTranslate = QString();
    if (!admits(text))
        return;
    inputText.set(text);
    if (appState.storeTrouble() || !appState.isPendingTextWanted)
        return;
    m_needs.clock.after(pendingTextDelay, m_mainState, [self = shared_from_this(), text] {
        // Another text may have replaced it since, which is only offered and not to be translated.
        if (withLineFeeds(self->inputText.get()) == withLineFeeds(text) &&
            !self->m_needs.appState.storeTrouble())
            self->performTranslate();
    });
}

void TranslateState::toggleSpeech() {
    if (m_needs.speech.isSpeaking())
        m_needs.speech.stop();
    else
        m_needs.speech.speak(outputText(), targetLang());
}

void TranslateState::copyResult() {
    if (outputText().isEmpty())
        return;
    m_needs.pasteboard.setString(outputText());
    isCopied = true;
    m_copyFeedbackEnd = m_needs.clock.after(copyFeedback, [this] { isCopied = false; });
}

void TranslateState::clear() {
    inputText.set(QString());
    showResult(QString());
    showError(std::nullopt);
}

void TranslateState::dismissError() {
    showError(std::nullopt);
    if (m_needs.appState.storeTrouble())
        m_needs.appState.dismissStoreTrouble();
}

}  // namespace tralio
