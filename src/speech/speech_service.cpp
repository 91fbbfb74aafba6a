#include "speech/speech_service.h"

#include <QCoreApplication>
#include <QPointer>

#include "speech/speech_synthesizer.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

const QString english = u"en-US"_s;
const QString vietnamese = u"vi-VN"_s;

QString voiceFor(const QString& languageCode) {
    const QString language = languageCode.toLower();
    return language.contains(u"anh") || language == u"en" ? english : vietnamese;
}

}  // namespace

SpeechService::SpeechService(SpeechSynthesizer& synthesizer) : m_synthesizer(synthesizer) {}

void SpeechService::speak(const QString& text, const QString& languageCode) {
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty())
        return;
    if (m_synthesizer.isSpeaking()) {
        m_synthesizer.stopSpeaking();
        isSpeaking = false;
        return;
    }
    QStringList voices{voiceFor(languageCode), english};
    voices.removeDuplicates();
    failure = std::nullopt;
    isSpeaking = true;
    // The synthesizer may report the end on another thread, and after this service is destroyed.
    m_synthesizer.speak(
        {trimmed, voices}, [service = QPointer(this), utterance = ++m_utterance](ReadingEnd end) {
            QMetaObject::invokeMethod(
                QCoreApplication::instance(),
                [service, utterance, end] {
                    if (service && service->m_utterance == utterance)
                        service->finish(end);
                },
                Qt::QueuedConnection);
        });
}

void SpeechService::finish(ReadingEnd end) {
    if (end == ReadingEnd::failed && isSpeaking())
        failure = u"Không thể đọc thành tiếng. Vui lòng kiểm tra thiết bị âm thanh và bộ đọc của hệ thống."_s;
    isSpeaking = false;
}

void SpeechService::stop() {
    if (m_synthesizer.isSpeaking())
        m_synthesizer.stopSpeaking();
    isSpeaking = false;
}

}  // namespace tralio
