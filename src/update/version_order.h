#pragma once

#include <QStringView>

#include <compare>

namespace tralio {

/// The order of version numbers: runs of the digits 0 to 9 compare by their value, however long they are, and
/// everything else character by character by its code. What begins like another and goes on is the greater.
/// Leading zeros make no difference. The same in every locale.
[[nodiscard]] std::weak_ordering compareVersions(QStringView left, QStringView right);

}  // namespace tralio
