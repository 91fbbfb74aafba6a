#include "platform/linux/speech/ssip_connection.h"

#include "common/clock.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

constexpr int receivingData = 230;

/// A text in the daemon's format: lines end in CR and LF, and a leading dot is doubled, since a line with a
/// single dot ends the text.
QByteArray bodyOf(const QString& text) {
    QByteArray body;
    for (const QByteArray& line : text.toUtf8().split('\n')) {
        if (line.startsWith('.'))
            body += '.';
        body += line + "\r\n";
    }
    return body + ".\r\n";
}

}  // namespace

SsipConnection::SsipConnection(const QString& socketPath, Clock& clock, std::chrono::milliseconds silence)
    : m_clock(clock), m_silence(silence), m_stream(socketPath) {
    m_reader.onReply = [this](const Reply& reply) { conclude(reply); };
    m_reader.onEvent = [this](Event event, qint64 message) { Q_EMIT eventArrived(event, message); };
    connect(&m_stream, &UnixStream::arrived, this, [this](const QByteArray& bytes) {
        if (!m_reader.add(bytes))
            close(u"the daemon does not speak its protocol"_s);
    });
    connect(&m_stream, &UnixStream::ended, this, &SsipConnection::close);
    connect(&m_stream, &UnixStream::opened, this, [this] {
        m_hasOpened = true;
        Q_EMIT opened();
    });
}

void SsipConnection::send(const QByteArray& command, Answer answer) {
    m_commands.push_back({command, {}, std::move(answer)});
    sendNext();
}

void SsipConnection::speak(const QString& text, Answer answer) {
    m_commands.push_back({"SPEAK", bodyOf(text), std::move(answer)});
    sendNext();
}

void SsipConnection::sendNext() {
    if (m_isBusy || m_commands.empty() || !m_stream.isOpen())
        return;
    m_isBusy = true;
    m_stream.write(m_commands.front().line + "\r\n");
    limitTime();
}

void SsipConnection::limitTime() {
    m_watchdog = m_clock.after(
        m_silence, [this] { close(u"the daemon does not answer"_s); });
}

void SsipConnection::conclude(const Reply& reply) {
    if (!m_isBusy)
        return;
    if (reply.code == receivingData) {
        m_stream.write(std::exchange(m_commands.front().body, {}));
        limitTime();
        return;
    }
    m_watchdog.takeBack();
    m_isBusy = false;
    const Command command = std::move(m_commands.front());
    m_commands.pop_front();
    sendNext();
    if (command.answer)
        command.answer(reply);
}

void SsipConnection::close(const QString& reason) {
    if (m_isClosed)
        return;
    abandon();
    Q_EMIT closed(reason);
}

void SsipConnection::abandon() {
    if (std::exchange(m_isClosed, true))
        return;
    m_reader.stop();
    m_watchdog.takeBack();
    // The daemon goes on reading what a client that has gone has left. A text that it has not asked for yet
    // is ended, or the command would be part of it.
    const bool isTextAwaited = m_isBusy && !m_commands.front().body.isEmpty();
    m_stream.write(isTextAwaited ? ".\r\nCANCEL SELF\r\n" : "CANCEL SELF\r\n");
    m_commands.clear();
    m_stream.close();
}

}  // namespace tralio
