#include "state/app_state.h"

#include <utility>

#include "common/debug_log.h"
#include "common/excerpt.h"

namespace tralio {

using namespace Qt::StringLiterals;

void AppState::requestTranslation(const QString& text) {
    const QString trimmed = text.trimmed();
    debugLog(u"AppState.requestTranslation: requested with text '"_s + excerpt(trimmed) + u"'"_s);
    bring(trimmed, true);
}

void AppState::offerTranslation(const QString& text) {
    debugLog(u"AppState.offerTranslation: a text that the user may send"_s);  // it may be a password
    bring(text.trimmed(), false);
}

void AppState::bring(const QString& text, bool isWanted) {
    if (text.isEmpty())
        return;
    stopAwaiting();
    notice = QString();
    isPendingTextWanted = isWanted;
    pendingTextToTranslate = text;
    translateTriggerId = QUuid::createUuid();
}

void AppState::notifyPopoverOpened() {
    openPopoverSignal = QUuid::createUuid();
}

void AppState::beginReading(std::stop_source reading) {
    stopAwaiting();
    m_reading.request_stop();
    m_reading = std::move(reading);
    notice = QString();
    linesRead = 0;
    isReading = true;
}

void AppState::endReading(const std::stop_token& reading) {
    if (reading != m_reading.get_token())
        return;
    m_reading = std::stop_source(std::nostopstate);
    isReading = false;
    linesRead = 0;
}

void AppState::stopReading() {
    stopAwaiting();
    m_reading.request_stop();
    endReading(m_reading.get_token());
}

void AppState::beginAwaiting(Awaited what, std::stop_source stop) {
    m_awaiting.request_stop();
    m_awaiting = std::move(stop);
    awaited = what;
}

void AppState::endAwaiting(const std::stop_token& stop) {
    if (stop != m_awaiting.get_token())
        return;
    m_awaiting = std::stop_source(std::nostopstate);
    awaited = std::nullopt;
}

void AppState::stopAwaiting() {
    m_awaiting.request_stop();
    endAwaiting(m_awaiting.get_token());
}

void AppState::showPopover() {
    if (onShowPopover)
        onShowPopover();
}

void AppState::hidePopover() {
    if (onHidePopover)
        onHidePopover();
}

void AppState::unlockKey() {
    if (onUnlockKey)
        onUnlockKey();
}

void AppState::dismissStoreTrouble() {
    storeTrouble = std::nullopt;
    if (onStoreTroubleDismissed)
        onStoreTroubleDismissed();
}

}  // namespace tralio
