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

/// A connection to the speech daemon in its line protocol (SSIP): each command gets a numbered reply, and
/// between the replies come the events of a reading. No operation blocks. A daemon that does not reply to a
/// command in time counts as gone.
class SsipConnection final : public QObject {
    Q_OBJECT

public:
    using Reply = SsipReader::Reply;
    using Event = SsipReader::Event;
    using Answer = std::function<void(const Reply&)>;

    /// Begins to connect. `silence` is the longest time for a reply.
    SsipConnection(const QString& socketPath, Clock& clock, std::chrono::milliseconds silence);

    [[nodiscard]] bool hasOpened() const { return m_hasOpened; }

    /// Silences what is read and closes the connection, without a further signal or answer.
    void abandon();

    /// Commands are sent one at a time. Those left when the connection ends get no answer.
    void send(const QByteArray& command, Answer answer = {});
    /// Sends a text; the reply's data is the number of the message.
    void speak(const QString& text, Answer answer);

Q_SIGNALS:
    void opened();
    void eventArrived(tralio::SsipConnection::Event event, qint64 message);
    /// The last signal; also emitted for a connection that never opened.
    void closed(const QString& reason);

private:
    struct Command {
        QByteArray line;
        QByteArray body;  ///< sent when the daemon asks for it
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
    std::deque<Command> m_commands;  ///< the first one has been sent if `m_isBusy`
    bool m_isBusy = false;
    bool m_hasOpened = false;
    bool m_isClosed = false;
    ScheduledCall m_watchdog;  ///< gives up a silent daemon
};

}  // namespace tralio
