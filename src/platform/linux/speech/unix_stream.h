#pragma once

#include <QByteArray>
#include <QObject>

#include <memory>

class QSocketNotifier;

namespace tralio {

/// A connection to a program that listens at a socket of the file system, served by the event loop. No
/// operation waits, and none raises a signal of the system when the other side has gone.
///
/// WORKAROUND: QLocalSocket of Qt 6.4 would do, but the library that it comes with takes a megabyte of
/// memory.
class UnixStream final : public QObject {
    Q_OBJECT

public:
    /// Begins to connect. Success and failure are told from the event loop, never from within this call.
    explicit UnixStream(const QString& path);
    ~UnixStream() override;

    [[nodiscard]] bool isOpen() const { return m_fd >= 0; }

    /// Sends the bytes as the other side takes them; before `opened` and after the end they are dropped.
    void write(const QByteArray& bytes);

    /// Ends the connection without a further signal. What has not been sent yet is lost.
    void close();

    // Whoever hears one of these may close the stream, or destroy it.
Q_SIGNALS:
    void opened();
    void arrived(const QByteArray& bytes);
    /// The last signal, told once; a stream that never opened ends so, too.
    void ended(const QString& reason);

private:
    void open(const QString& path);
    void read();
    void flush();
    void end(int error);

    int m_fd = -1;
    std::unique_ptr<QSocketNotifier> m_readable;
    std::unique_ptr<QSocketNotifier> m_writable;  ///< enabled while there is something left to send
    QByteArray m_output;
    int m_writeError = 0;  ///< ends the stream once all that has arrived is read
    bool m_isClosed = false;
};

}  // namespace tralio
