#pragma once

#include <QString>

#include <optional>

/// The file of the user's values and SQLite's side files as files: who may read them, and where damaged ones
/// are moved.
namespace tralio::store_file {

/// Creates the folders and the file if they are missing, accessible only to the user whatever the umask, and
/// removes the permissions of others from existing files. Errors are left to be found when the file is
/// opened.
void createPrivately(const QString& path);

/// Whether there is surely no file, or one in which nothing has been stored.
[[nodiscard]] bool isAbsent(const QString& path);

/// Renames a damaged file and its side files to the first free name of the form "<name>.damaged-<number>", so
/// that its contents may still be rescued. Returns the new name without its folder, or nothing if the file
/// could not be renamed.
[[nodiscard]] std::optional<QString> setAside(const QString& path);

/// Whether programs on several hosts may have the files of such a file system open, by its magic number
/// (statfs).
[[nodiscard]] bool isShared(quint32 fileSystem);
/// The same of the file system that a file is on.
[[nodiscard]] bool liesOnShared(const char* path);

}  // namespace tralio::store_file
