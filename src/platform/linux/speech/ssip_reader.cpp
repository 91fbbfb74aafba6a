#include "platform/linux/speech/ssip_reader.h"

#include <algorithm>
#include <utility>

namespace tralio {
namespace {

constexpr qsizetype codeLength = 3;
constexpr int firstEvent = 700;

}  // namespace

bool SsipReader::add(const QByteArray& bytes) {
    const QByteArray input = std::exchange(m_input, {}) + bytes;
    qsizetype start = 0;
    for (qsizetype end = 0; (end = input.indexOf('\n', start)) >= 0; start = end + 1) {
        if (m_isStopped)
            return true;
        if (!take(QByteArrayView(input).sliced(start, end - start).trimmed()))
            return false;
    }
    m_input = input.sliced(start);
    return m_input.size() <= maximumReply;
}

bool SsipReader::take(QByteArrayView line) {
    bool isNumber = false;
    const int code = line.first(std::min(codeLength, line.size())).toByteArray().toInt(&isNumber);
    if (!isNumber || line.size() <= codeLength)
        return false;
    const bool isLast = line[codeLength] != '-';
    const QByteArrayView rest = line.sliced(codeLength + 1);
    if (code >= firstEvent) {
        if (!isLast) {
            m_eventData.append(rest).append('\n');
            return m_eventData.size() <= maximumReply;
        }
        const qint64 message = m_eventData.left(m_eventData.indexOf('\n')).toLongLong();
        m_eventData.clear();
        onEvent(static_cast<Event>(code), message);
    } else if (isLast) {
        m_reply.code = code;
        onReply(std::exchange(m_reply, {}));
    } else {
        m_reply.data.append(rest).append('\n');
        return m_reply.data.size() <= maximumReply;
    }
    return true;
}

}  // namespace tralio
