#pragma once

#include <QTemporaryFile>

#include "common/localized_error.h"

namespace tralio {

/// A file that could not be written, described for the user.
class FileError final : public LocalizedError {
public:
    /// `error` is what errno was after the operation on `path`.
    [[nodiscard]] static FileError fromErrno(int error, const QString& path);

private:
    using LocalizedError::LocalizedError;
};

/// A file under a temporary name in the folder where it will stand: nobody sees it half-written, and it goes
/// with this object, unless it was moved. Every operation fails with a `FileError`.
class StagedFile final {
public:
    explicit StagedFile(const QString& folder);

    void write(const QByteArray& piece);
    [[nodiscard]] qint64 size() const { return m_size; }

    /// Gives the file its final name, in the same folder. A file of that name is replaced in one step.
    void moveTo(const QString& path);

private:
    QTemporaryFile m_file;
    qint64 m_size = 0;
};

}  // namespace tralio
