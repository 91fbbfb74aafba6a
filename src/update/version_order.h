#pragma once

#include <QStringView>

#include <compare>

namespace tralio {

/// The order of version numbers. Runs of the digits 0 to 9 are compared by value, however long they are, and
/// all other characters by their code points. Of two versions of which one begins with the other, the longer
/// one is greater. Leading zeros make no difference. Independent of the locale.
[[nodiscard]] std::weak_ordering compareVersions(QStringView left, QStringView right);

}  // namespace tralio
