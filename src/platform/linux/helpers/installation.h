#pragma once

#include <QString>

/// Where the parts of this program are installed. Derived only from the folder of the running program, so
/// that it works from an application bundle, from any installation prefix and from the build folder.
namespace tralio::installation {

/// The folder of the helper programs, for a program in `programFolder`.
[[nodiscard]] QString helperFolder(const QString& programFolder);

/// The path of the helper program with this name, for the running program.
[[nodiscard]] QString helper(QStringView name);

/// The property list that contains the version of the program in `programFolder`.
[[nodiscard]] QString infoPlist(const QString& programFolder);

}  // namespace tralio::installation
