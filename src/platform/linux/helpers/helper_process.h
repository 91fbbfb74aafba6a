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

/// A program beside ours that works for us, and the life that it leads: it is started by the first frame that
/// is sent to it, watched while it is at work, kept for a time after that, and then let go by the end of its
/// input. One that ends, hangs or talks nonsense is given up: who had work with it is told in words, and the
/// next frame starts another.
///
/// Used from the main thread.
class HelperProcess final : public QObject {
    Q_OBJECT

public:
    /// What its owner tells the user when the program is of no use any more.
    struct Words {
        QString cannotStart;
        QString ended;
        QString hangs;
        QString talksNonsense;
    };
    struct Terms {
        QString program;  ///< its path; started with `serving::argument`
        std::map<QString, QString> environment = {};
        size_t maximumReply = 0;                 ///< bytes of a payload
        std::optional<std::string> ping = {};    ///< a frame that is answered also by one that is at work
        std::chrono::milliseconds silence = {};  ///< for how long one that is at work may say nothing
        Words words;
    };

    HelperProcess(Terms terms, Clock& clock);
    ~HelperProcess() override;

    /// Starts the program unless it runs, and keeps it for that time.
    void prepare(std::chrono::milliseconds keep);

    void send(const std::string& frame);

    /// While it is at work, the program is watched, and stays.
    void setAtWork(bool isAtWork);

    /// The program may say nothing for so long from now on, until its next frame.
    void allowSilence(std::chrono::milliseconds silence);

    /// Lets the program stay for that time at least, if it runs.
    void keepFor(std::chrono::milliseconds time);

    /// Ends the program, whose work is lost: `lost` is emitted with these words.
    void giveUp(const QString& words);

    /// Of the program that runs, or 0.
    [[nodiscard]] qint64 processId() const;

Q_SIGNALS:
    /// A frame has come. Who cannot read it calls `refuse`.
    void arrived(const std::string& payload);

    /// What was under way has failed.
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
    std::map<std::chrono::milliseconds, ScheduledCall> m_kept;  ///< by the time that was asked for
};

}  // namespace tralio
