#pragma once

#include <QByteArray>
#include <QObject>

#include <memory>

class QSocketNotifier;

namespace tralio {

/// A connection to a Unix socket, served by the event loop. No operation blocks, and writing to a closed
/// connection raises no SIGPIPE.
///
/// WORKAROUND: QLocalSocket of Qt 6.4 would do, but it needs the Qt Network library, which takes a megabyte
/// of memory.
class UnixStream final : public QObject {
    Q_OBJECT

public:
    /// Begins to connect. Success and failure are reported from the event loop, never from within this call.
    explicit UnixStream(const QString& path);
    ~UnixStream() override;

    [[nodiscard]] bool isOpen() const { return m_fd >= 0; }

    /// Sends the bytes as the other side takes them; before `opened` and after the end they are dropped.
    void write(const QByteArray& bytes);

    /// Ends the connection without a further signal. What has not been sent yet is lost.
    void close();

    // Receivers of these signals may close or destroy the stream.
Q_SIGNALS:
    void opened();
    void arrived(const QByteArray& bytes);
    /// The last signal, emitted once; also for a stream that never opened.
    void ended(const QString& reason);

private:
    void open(const QString& path);
    void read();
    void flush();
    void end(int error);

    int m_fd = -1;
    std::unique_ptr<QSocketNotifier> m_readable;
    std::unique_ptr<QSocketNotifier> m_writable;  ///< enabled while something is left to send
    QByteArray m_output;
    int m_writeError = 0;  ///< ends the stream once everything that has arrived is read
    bool m_isClosed = false;
};

}  // namespace tralio
