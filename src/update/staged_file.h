#pragma once

#include <QString>

#include "common/localized_error.h"

namespace tralio {

/// A file that could not be written, with a description for the user.
class FileError final : public LocalizedError {
public:
    /// `error` is errno after the operation on `path`.
    [[nodiscard]] static FileError fromErrno(int error, const QString& path);

private:
    using LocalizedError::LocalizedError;
};

/// A file in its final folder that has no name yet: nobody sees it half-written. It is deleted with this
/// object, and when the process ends in any way, unless it has got its name. Every operation throws a
/// `FileError` on failure.
class StagedFile final {
public:
    explicit StagedFile(QString folder);
    StagedFile(const StagedFile&) = delete;
    StagedFile& operator=(const StagedFile&) = delete;
    ~StagedFile();

    void write(const QByteArray& piece);
    [[nodiscard]] qint64 size() const { return m_size; }

    /// A path by which other programs can read the file as long as this object lives.
    [[nodiscard]] QString path() const;

    /// Gives the file its final name, in the same folder. An existing file of that name is replaced
    /// atomically.
    void moveTo(const QString& path);

private:
    /// A name that no file in the folder has.
    [[nodiscard]] QByteArray freshName() const;

    QString m_folder;
    int m_file = -1;
    /// The file's temporary name on file systems that do not support files without one.
    QByteArray m_name;
    qint64 m_size = 0;
};

}  // namespace tralio
