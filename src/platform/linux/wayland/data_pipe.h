#pragma once

#include <QByteArray>
#include <QDeadlineTimer>
#include <QObject>
#include <QString>

#include <functional>
#include <optional>

namespace tralio {

/// A pipe for what another program writes.
class DataPipeReader final {
public:
    DataPipeReader();
    DataPipeReader(const DataPipeReader&) = delete;
    DataPipeReader& operator=(const DataPipeReader&) = delete;
    ~DataPipeReader();

    [[nodiscard]] bool isOpen() const { return m_readEnd >= 0; }

    /// What the writer gets; it is the only one left to write once ours is closed.
    [[nodiscard]] int writeEnd() const { return m_writeEnd; }
    void closeWriteEnd();

    /// Everything until the writer closes its end, or the first `most` + 1 bytes when there are more; absent
    /// when neither has come by `deadline`.
    [[nodiscard]] std::optional<QByteArray> read(qsizetype most, QDeadlineTimer deadline) const;
    /// The same, piece by piece; false where it would be absent.
    [[nodiscard]] bool read(
        qsizetype most, QDeadlineTimer deadline, const std::function<void(QByteArrayView)>& take) const;

private:
    int m_readEnd = -1;
    int m_writeEnd = -1;
};

/// Writes a text to a program that reads as slowly as it likes, from the event loop. Deletes itself when
/// done.
class DataPipeWriter final : public QObject {
public:
    /// Takes over the file descriptor.
    DataPipeWriter(int fd, const QString& text);
    ~DataPipeWriter() override;

private:
    void write();

    int m_fd;
    QByteArray m_rest;
};

}  // namespace tralio
