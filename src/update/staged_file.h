#pragma once

#include <QString>

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

/// A file in the folder where it will stand, without a name: nobody sees it half-written, and it goes with
/// this object, or with the process however that ends, unless it got its name. Every operation fails with a
/// `FileError`.
class StagedFile final {
public:
    explicit StagedFile(QString folder);
    StagedFile(const StagedFile&) = delete;
    StagedFile& operator=(const StagedFile&) = delete;
    ~StagedFile();

    void write(const QByteArray& piece);
    [[nodiscard]] qint64 size() const { return m_size; }

    /// Gives the file its final name, in the same folder. A file of that name is replaced in one step.
    void moveTo(const QString& path);

private:
    /// A name in the folder that no file has.
    [[nodiscard]] QByteArray freshName() const;

    QString m_folder;
    int m_file = -1;
    /// The name that the file has already, where the file system has no files without one.
    QByteArray m_name;
    qint64 m_size = 0;
};

}  // namespace tralio
