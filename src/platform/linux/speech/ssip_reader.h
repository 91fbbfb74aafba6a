#pragma once

#include <QByteArray>

#include <functional>

namespace tralio {

/// Parses the speech daemon's line protocol (SSIP): numbered replies of one line or more, and events between
/// them. Bytes may come in any pieces.
class SsipReader final {
public:
    struct Reply {
        int code = 0;
        QByteArray data;  ///< the lines before the closing one, without their codes, each with a line feed

        [[nodiscard]] bool isSuccess() const { return code >= 200 && code < 300; }
    };
    enum class Event { mark = 700, begin = 701, end = 702, cancel = 703 };

    /// In bytes. A longer reply is no list of voices.
    static constexpr qsizetype maximumReply = 8 * 1024 * 1024;

    std::function<void(const Reply&)> onReply;
    std::function<void(Event, qint64 message)> onEvent;

    /// False when the bytes violate the protocol; the rest cannot be read. The callbacks may call `stop`.
    [[nodiscard]] bool add(const QByteArray& bytes);

    /// No callback is called from now on.
    void stop() { m_isStopped = true; }

private:
    [[nodiscard]] bool take(QByteArrayView line);

    QByteArray m_input;
    QByteArray m_eventData;
    Reply m_reply;
    bool m_isStopped = false;
};

}  // namespace tralio
