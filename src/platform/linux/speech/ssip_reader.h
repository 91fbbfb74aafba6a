#pragma once

#include <QByteArray>

#include <functional>

namespace tralio {

/// Takes apart what the speech daemon says in its line protocol (SSIP): numbered replies of one line or more,
/// and events between them. Bytes may come in any pieces.
class SsipReader final {
public:
    struct Reply {
        int code = 0;
        QByteArray data;  ///< the lines before the closing one, without their codes, each with a line feed

        [[nodiscard]] bool isSuccess() const { return code >= 200 && code < 300; }
    };
    enum class Event { mark = 700, begin = 701, end = 702, cancel = 703 };

    /// More than this in one reply is no list of voices any more.
    static constexpr qsizetype maximumReply = 8 * 1024 * 1024;

    std::function<void(const Reply&)> onReply;
    std::function<void(Event, qint64 message)> onEvent;

    /// False when what came is not the protocol; nothing can be made of what follows. What is called may have
    /// the reader stop.
    [[nodiscard]] bool add(const QByteArray& bytes);

    /// Nothing more is told.
    void stop() { m_isStopped = true; }

private:
    [[nodiscard]] bool take(QByteArrayView line);

    QByteArray m_input;
    QByteArray m_eventData;
    Reply m_reply;
    bool m_isStopped = false;
};

}  // namespace tralio
