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

/// The desktop's speech daemon, speech-dispatcher, with whatever engines and voices the user has installed.
///
/// Nothing is started or connected before the first text, and the connection is given up when there has been
/// nothing to read for a while. A daemon that is missing, hangs or dies ends the reading as one that failed,
/// and the log says how. Used from the main thread, where ends are told, too.
///
/// WORKAROUND: Qt Speech 6.4, which would be the obvious choice, reads the list of thousands of voices before
/// it returns, hears neither of a daemon's death nor of an engine's, and waits for a daemon that hangs.
class SpeechDispatcher final : public QObject, public SpeechSynthesizer {
    Q_OBJECT

public:
    struct Limits {
        std::chrono::milliseconds start = std::chrono::seconds(10);  ///< for the daemon to start
        std::chrono::milliseconds reply = std::chrono::seconds(10);  ///< for the daemon to answer
        /// For the first word, once the daemon has begun, where the engine tells of it. Without a sound
        /// device it begins and never reads it.
        std::chrono::milliseconds firstWord = std::chrono::seconds(5);
        /// Without news of the text, before asking whether it is still being read.
        std::chrono::milliseconds quiet = std::chrono::seconds(4);
        std::chrono::milliseconds idle = std::chrono::minutes(1);  ///< before the connection is given up
    };

    /// Connects at the socket where every program of the session does. The clock outlives this object.
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
        qint64 message = 0;  ///< the daemon's number for it, once it has taken it
        int probes = 0;      ///< wait behind it
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
    std::optional<std::vector<SpeechModule>> m_modules;  ///< the default one first; absent until told
    /// The engines that tell of the marks in a text that they pass: the usual one, and those that have.
    QSet<QString> m_modulesWithMarks{QStringLiteral("espeak-ng")};
    std::optional<Reading> m_reading;
    qint64 m_readings = 0;
    QProcess* m_starter = nullptr;
    ScheduledCall m_startLimit;  ///< while the daemon starts
    ScheduledCall m_retry;       ///< within that time
    ScheduledCall m_firstWordLimit;
    ScheduledCall m_quietLimit;
    ScheduledCall m_idleLimit;
};

}  // namespace tralio
