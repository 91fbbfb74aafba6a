#pragma once

#include <QObject>
#include <QSet>

#include <chrono>
#include <memory>
#include <optional>
#include <vector>

#include "common/clock.h"
#include "platform/linux/speech/speech_voices.h"
#include "platform/linux/speech/ssip_connection.h"
#include "speech/speech_synthesizer.h"

class QProcess;

namespace tralio {

/// Reads aloud through the desktop's speech daemon, speech-dispatcher, with the engines and voices that the
/// user has installed.
///
/// Nothing is started or connected before the first text, and the connection is closed when there has been
/// nothing to read for a while. If the daemon is missing, hangs or dies, the reading ends as failed, with the
/// reason in the log. Used from the main thread, where `onEnd` is called, too.
///
/// WORKAROUND: Qt Speech 6.4, which would be the obvious choice, reads the list of thousands of voices before
/// it returns, notices neither the death of the daemon nor of an engine, and blocks while a daemon hangs.
class SpeechDispatcher final : public QObject, public SpeechSynthesizer {
    Q_OBJECT

public:
    struct Limits {
        std::chrono::milliseconds start = std::chrono::seconds(10);  ///< for starting the daemon
        std::chrono::milliseconds reply = std::chrono::seconds(10);  ///< for an answer of the daemon
        /// For the first word, from the time when the daemon has begun, with engines that report it. Without
        /// a sound device the daemon begins but never reaches it.
        std::chrono::milliseconds firstWord = std::chrono::seconds(5);
        /// Without news of the text, before asking whether it is still being read.
        std::chrono::milliseconds quiet = std::chrono::seconds(4);
        std::chrono::milliseconds idle = std::chrono::minutes(1);  ///< before the connection is closed
    };

    /// Uses the socket that all programs of the session use. The clock outlives this object.
    explicit SpeechDispatcher(Clock& clock);
    SpeechDispatcher(QString socketPath, QString program, Clock& clock, Limits limits);
    ~SpeechDispatcher() override;

    [[nodiscard]] bool isSpeaking() const override { return m_reading.has_value(); }
    void speak(const Utterance& utterance, std::function<void(ReadingEnd)> onEnd) override;
    void stopSpeaking() override;

private:
    struct Reading {
        Utterance utterance;
        std::function<void(ReadingEnd)> onEnd;
        qint64 number = 0;
        QString module = {};
        qint64 message = 0;  ///< the daemon's number for the text; 0 until it has accepted it
        int probes = 0;      ///< messages queued behind the text
    };

    void connectToDaemon();
    void startDaemon();
    void introduce();
    void listVoices(const QStringList& moduleNames);
    void begin();
    void follow(SsipConnection::Event event, qint64 message);
    void watch();
    void probe();
    void fail(const QString& reason);
    void endReading(ReadingEnd end);
    void waitIdly();
    void endStart();
    void dropConnection();
    [[nodiscard]] bool isPresent(qint64 number) const;

    QString m_socketPath;
    QString m_program;
    Clock& m_clock;
    Limits m_limits;
    std::unique_ptr<SsipConnection> m_connection;
    QString m_defaultLanguage;
    /// the default one first; absent until they are known
    std::optional<std::vector<SpeechModule>> m_modules;
    /// The engines that report the marks in a text: the usual one, and those that have done so.
    QSet<QString> m_modulesWithMarks{QStringLiteral("espeak-ng")};
    std::optional<Reading> m_reading;
    qint64 m_readings = 0;
    QProcess* m_starter = nullptr;
    ScheduledCall m_startLimit;  ///< while the daemon starts
    ScheduledCall m_retry;       ///< while the daemon starts
    ScheduledCall m_firstWordLimit;
    ScheduledCall m_quietLimit;
    ScheduledCall m_idleLimit;
};

}  // namespace tralio
