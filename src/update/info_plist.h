#pragma once

#include <QString>

#include <optional>

namespace tralio {

/// The text under `key` in the Info.plist at `path` of an application bundle; nothing if there is no such
/// file, no such key, or if the value is not a text.
[[nodiscard]] std::optional<QString> infoPlistText(const QString& path, QStringView key);

/// The version in the Info.plist at `path`, or a fixed one if there is none.
[[nodiscard]] QString bundleVersion(const QString& path);

}  // namespace tralio
