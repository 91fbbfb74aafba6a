#pragma once

#include <QString>

/// Where the parts of this program stand, which is told by the place of the program alone: it runs from an
/// application bundle, from any installation prefix and from the build folder.
namespace tralio::installation {

/// The folder of the programs beside ours, for the program in `programFolder`.
[[nodiscard]] QString helperFolder(const QString& programFolder);

/// The program of this name beside the running one.
[[nodiscard]] QString helper(QStringView name);

/// The property list that tells the version of the program in `programFolder`.
[[nodiscard]] QString infoPlist(const QString& programFolder);

}  // namespace tralio::installation
