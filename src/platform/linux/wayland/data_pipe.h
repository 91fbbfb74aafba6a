#pragma once

#include <QByteArray>
#include <QDeadlineTimer>
#include <QObject>
#include <QString>

#include <functional>
#include <optional>

namespace tralio {

/// A pipe into which another program writes.
class DataPipeReader final {
public:
    DataPipeReader();
    DataPipeReader(const DataPipeReader&) = delete;
    DataPipeReader& operator=(const DataPipeReader&) = delete;
    ~DataPipeReader();

    [[nodiscard]] bool isOpen() const { return m_readEnd >= 0; }

    /// The end for the writer. Close ours after passing it on, so that the pipe ends when the writer closes
    /// its own.
    [[nodiscard]] int writeEnd() const { return m_writeEnd; }
    void closeWriteEnd();

    /// Everything until the writer closes its end, or the first `most` + 1 bytes if there are more; absent if
    /// neither has happened by `deadline`.
    [[nodiscard]] std::optional<QByteArray> read(qsizetype most, QDeadlineTimer deadline) const;
    /// The same, piece by piece; false where the other would be absent.
    [[nodiscard]] bool read(
        qsizetype most, QDeadlineTimer deadline, const std::function<void(QByteArrayView)>& take) const;

private:
    int m_readEnd = -1;
    int m_writeEnd = -1;
};

/// Writes a text to another program from the event loop, however slowly that reads. Deletes itself when done.
class DataPipeWriter final : public QObject {
public:
    /// Takes ownership of the file descriptor.
    DataPipeWriter(int fd, const QString& text);
    ~DataPipeWriter() override;

private:
    void write();

    int m_fd;
    QByteArray m_rest;
};

}  // namespace tralio
