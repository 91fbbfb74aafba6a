#pragma once

#include <QString>

#include <optional>

namespace tralio {

/// The text that an application bundle's Info.plist at `path` has under `key`; nothing when there is no such
/// file, no such key, or a value that is not a text.
[[nodiscard]] std::optional<QString> infoPlistText(const QString& path, QStringView key);

/// The version of the bundle that the program in `executableFolder` runs in, and a fixed one outside a
/// bundle.
[[nodiscard]] QString bundleVersion(const QString& executableFolder);

}  // namespace tralio
