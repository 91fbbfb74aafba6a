#pragma once

#include <QString>

#include <optional>

namespace tralio {

/// The text that an application bundle's Info.plist at `path` has under `key`; nothing when there is no such
/// file, no such key, or a value that is not a text.
[[nodiscard]] std::optional<QString> infoPlistText(const QString& path, QStringView key);

/// The version that the Info.plist at `path` tells, and a fixed one where it tells none.
[[nodiscard]] QString bundleVersion(const QString& path);

}  // namespace tralio
