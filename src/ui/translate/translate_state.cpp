#include "ui/translate/translate_state.h"

#include <QStringBuilder>

#include <utility>

#include "common/clock.h"
#include "common/debug_log.h"
#include "common/excerpt.h"
#include "common/localized_error.h"
#include "common/on_change.h"
#include "engine/ai_service.h"
#include "hotkeys/pasteboard.h"
#include "state/app_settings.h"
#include "state/app_state.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

constexpr auto pendingTextDelay = 50ms;
constexpr auto copyFeedback = 1500ms;

const QString english = u"Tiếng Anh"_s;
const QString vietnamese = u"Tiếng Việt"_s;
const QString detect = u"Tự động phát hiện"_s;

}  // namespace

const QStringList& TranslateState::languages() {
    static const QStringList names{english,          vietnamese,     detect,         u"Tiếng Nhật"_s,
                                   u"Tiếng Trung"_s, u"Tiếng Hàn"_s, u"Tiếng Pháp"_s};
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
      m_services(services) {
    AppState& appState = m_services.appState;
    onChange(
        appState, this, [&appState] { return appState.translateTriggerId(); },
        [this] { checkAndTriggerPendingTranslation(); });
    onChange(
        appState, this, [&appState] { return appState.openPopoverSignal(); },
        [this] {
            m_services.clock.after(pendingTextDelay, this, [this] { checkAndTriggerPendingTranslation(); });
        });
}

bool TranslateState::canTranslate() const {
    return !isTranslating() && !inputText.get().trimmed().isEmpty();
}

void TranslateState::performTranslate() {
    const QString text = inputText.get().trimmed();
    debugLog(u"TranslateView.performTranslate: starting translation for '" % excerpt(text) % u"'");
    if (text.isEmpty())
        return;
    isTranslating = true;
    errorMessage = std::nullopt;
    m_currentTask = std::stop_source();
    translate(text, m_currentTask.get_token());
}

QCoro::Task<void> TranslateState::translate(QString text, std::stop_token stop) {
    const QPointer<TranslateState> self = this;  // the panel may be gone when the answer comes
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
    if (!self || stop.stop_requested())
        co_return;
    if (failure)
        errorMessage = failure;
    else
        outputText = result;
    isTranslating = false;
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
    outputText = oldInput;
}

void TranslateState::checkAndTriggerPendingTranslation() {
    AppState& appState = m_services.appState;
    const QString pending = appState.pendingTextToTranslate();
    debugLog(u"TranslateView.checkAndTriggerPendingTranslation: pendingText='" % excerpt(pending) % u"'");
    const QString text = pending.trimmed();
    if (text.isEmpty())
        return;
    inputText.set(text);
    appState.pendingTextToTranslate = QString();
    m_services.clock.after(pendingTextDelay, this, [this] { performTranslate(); });
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
    errorMessage = std::nullopt;
}

void TranslateState::dismissError() {
    errorMessage = std::nullopt;
}

}  // namespace tralio
