#pragma once

#include <QString>
#include <QUrl>
#include <qcorotask.h>

#include <optional>

namespace tralio {

/// What a dropped file is taken for by the end of its name.
enum class DroppedFileKind { image, text, other };

[[nodiscard]] DroppedFileKind droppedFileKind(const QUrl& fileURL);

/// The content of a file of UTF-8 text, read on another thread, since the file may lie on a slow disk or a
/// network. Absent when it cannot be read, is not UTF-8 or is no regular file. Of one that is too long only
/// the beginning is read.
[[nodiscard]] QCoro::Task<std::optional<QString>> readTextFile(QString path);

}  // namespace tralio
