#pragma once

#include <QString>

#include <optional>

/// The file that holds the user's values, and the side files that SQLite keeps next to it, as files: who may
/// read them, and where a damaged one goes.
namespace tralio::store_file {

/// Creates what is missing of the folders and the file, for the user alone whatever the umask, and takes the
/// rights of others away from files that are there. What cannot be done is left for opening to find out.
void createPrivately(const QString& path);

/// Renames a damaged file and its side files to the first free name of the form "<name>.damaged-<number>", so
/// that nothing is lost that somebody might still rescue. Returns the new name without its folder, or nothing
/// when the file could not be renamed.
[[nodiscard]] std::optional<QString> setAside(const QString& path);

}  // namespace tralio::store_file
