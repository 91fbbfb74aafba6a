#pragma once

#include <QByteArray>
#include <QObject>

#include <chrono>
#include <deque>
#include <functional>
#include <memory>

#include "common/clock.h"
#include "platform/linux/speech/ssip_reader.h"
#include "platform/linux/speech/unix_stream.h"

namespace tralio {

/// A connection to the speech daemon, in its line protocol (SSIP): commands with a numbered reply each, and
/// between the replies the events of a reading. No operation waits. A daemon that leaves a command without a
/// reply for too long has gone.
class SsipConnection final : public QObject {
    Q_OBJECT

public:
    using Reply = SsipReader::Reply;
    using Event = SsipReader::Event;
    using Answer = std::function<void(const Reply&)>;

    /// Begins to connect. `silence` is the longest time that a reply may take.
    SsipConnection(const QString& socketPath, Clock& clock, std::chrono::milliseconds silence);

    [[nodiscard]] bool hasOpened() const { return m_hasOpened; }

    /// Ends the connection without a further signal or answer.
    void abandon();

    /// Commands are sent one after the other; after the connection's end they get no answer.
    void send(const QByteArray& command, Answer answer = {});
    /// Hands over a text; the reply's data is the message's number.
    void speak(const QString& text, Answer answer);

Q_SIGNALS:
    void opened();
    void eventArrived(tralio::SsipConnection::Event event, qint64 message);
    /// The last signal; a connection that never opened ends so, too.
    void closed(const QString& reason);

private:
    struct Command {
        QByteArray line;
        QByteArray body;  ///< sent when the daemon has asked for it
        Answer answer;
    };

    void sendNext();
    void limitTime();
    void conclude(const Reply& reply);
    void close(const QString& reason);

    Clock& m_clock;
    std::chrono::milliseconds m_silence;
    UnixStream m_stream;
    SsipReader m_reader;
    std::deque<Command> m_commands;  ///< the first one is with the daemon if `m_isBusy`
    bool m_isBusy = false;
    bool m_hasOpened = false;
    bool m_isClosed = false;
    ScheduledCall m_watchdog;  ///< gives a silent daemon up
};

}  // namespace tralio
