#pragma once

#include <QString>
#include <QUrl>
#include <qcorotask.h>

#include <optional>

namespace tralio {

/// The kind of a dropped file, by its extension.
enum class DroppedFileKind { image, text, other };

[[nodiscard]] DroppedFileKind droppedFileKind(const QUrl& fileURL);

/// The content of a UTF-8 text file. Absent if the file cannot be read, is not UTF-8, or is not a regular
/// file. If it is too long, only its beginning.
[[nodiscard]] std::optional<QString> contentOfTextFile(const QString& path);

/// The same, read on another thread, since a disk or network may be slow.
[[nodiscard]] QCoro::Task<std::optional<QString>> readTextFile(QString path);

}  // namespace tralio
