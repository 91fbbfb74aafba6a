#include "platform/linux/speech/ssip_connection.h"

#include "common/clock.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

constexpr int codeLength = 3;
constexpr int receivingData = 230;
constexpr int firstEvent = 700;

/// A text as the daemon wants it: lines with their ends in two characters, a point doubled where one alone
/// would end the text.
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
    connect(&m_stream, &UnixStream::arrived, this, &SsipConnection::read);
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

void SsipConnection::read(const QByteArray& bytes) {
    const QByteArray input = std::exchange(m_input, {}) + bytes;
    qsizetype start = 0;
    for (qsizetype end = 0; (end = input.indexOf('\n', start)) >= 0; start = end + 1) {
        take(QByteArrayView(input).sliced(start, end - start).trimmed());
        if (m_isClosed)
            return;
    }
    m_input = input.sliced(start);
}

void SsipConnection::take(QByteArrayView line) {
    bool isNumber = false;
    const int code = line.first(std::min<qsizetype>(codeLength, line.size())).toByteArray().toInt(&isNumber);
    if (!isNumber || line.size() <= codeLength) {
        close(u"the daemon does not speak its protocol"_s);
        return;
    }
    const bool isLast = line[codeLength] != '-';
    const QByteArrayView rest = line.sliced(codeLength + 1);
    if (code >= firstEvent) {
        if (!isLast) {
            m_eventData.append(rest).append('\n');
            return;
        }
        const qint64 message = m_eventData.left(m_eventData.indexOf('\n')).toLongLong();
        m_eventData.clear();
        Q_EMIT eventArrived(static_cast<Event>(code), message);
    } else if (isLast) {
        conclude(code);
    } else {
        m_reply.data.append(rest).append('\n');
    }
}

void SsipConnection::conclude(int code) {
    if (!m_isBusy)
        return;
    if (code == receivingData) {
        m_stream.write(std::exchange(m_commands.front().body, {}));
        limitTime();
        return;
    }
    m_watchdog.takeBack();
    m_isBusy = false;
    m_reply.code = code;
    const Reply reply = std::exchange(m_reply, {});
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
    m_isClosed = true;
    m_watchdog.takeBack();
    m_commands.clear();
    m_stream.close();
}

}  // namespace tralio
