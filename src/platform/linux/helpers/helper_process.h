#pragma once

#include <QObject>
#include <QProcess>
#include <QString>

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <string>

#include "common/clock.h"
#include "platform/linux/helpers/frames.h"

namespace tralio {

/// A helper program of ours and its life cycle. The first frame that is sent starts it; it is watched while
/// it is at work, kept for some time afterwards, and then ended by closing its input. If it ends by itself,
/// hangs or sends what is no valid frame, it is given up: `lost` carries an error message for the work under
/// way, and the next frame starts a new process.
///
/// Used from the main thread.
class HelperProcess final : public QObject {
    Q_OBJECT

public:
    /// The error messages with which the helper's work is reported as lost.
    struct Words {
        QString cannotStart;
        QString ended;
        QString hangs;
        QString talksNonsense;
    };
    struct Terms {
        QString program;  ///< path of the program; started with `serving::argument`
        std::map<QString, QString> environment = {};
        size_t maximumReply = 0;                 ///< of a payload, in bytes
        std::optional<std::string> ping = {};    ///< a frame that the helper answers even while it is at work
        std::chrono::milliseconds silence = {};  ///< how long it may send nothing while at work
        Words words;
    };

    HelperProcess(Terms terms, Clock& clock);
    ~HelperProcess() override;

    /// Starts the program if it does not run, and keeps it at least for that time.
    void prepare(std::chrono::milliseconds keep);

    void send(const std::string& frame);

    /// While it is at work, the program is watched for silence and not ended.
    void setAtWork(bool isAtWork);

    /// Until its next frame the program may be silent for that time, from now on.
    void allowSilence(std::chrono::milliseconds silence);

    /// Keeps the program, if it runs, at least for that time.
    void keepFor(std::chrono::milliseconds time);

    /// Kills the program and emits `lost` with this message.
    void giveUp(const QString& words);

    /// The process id of the running program, or 0.
    [[nodiscard]] qint64 processId() const;

Q_SIGNALS:
    /// A frame has arrived. A receiver that cannot decode it calls `refuse`.
    void arrived(const std::string& payload);

    /// The work under way has failed.
    void lost(const QString& words);

public:
    void refuse() { giveUp(m_terms.words.talksNonsense); }

private:
    void start();
    void read();
    void restartSilence(std::chrono::milliseconds silence);
    void concludeSilence();
    void concludeEnd(int exitCode, QProcess::ExitStatus status);
    void dismiss();
    void forget();

    Terms m_terms;
    Clock& m_clock;
    QProcess* m_process = nullptr;
    frames::Reader m_frames;
    bool m_isAtWork = false;
    ScheduledCall m_pings;
    ScheduledCall m_silence;
    std::map<std::chrono::milliseconds, ScheduledCall> m_kept;  ///< by the duration that was asked for
};

}  // namespace tralio
