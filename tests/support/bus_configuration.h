#pragma once

#include <QStringList>

namespace tralio {

/// Writes into `folder` the configuration of a message bus that starts, of the services that this machine
/// has, those with the names given and no others: what else is installed must not join in a test. Gives its
/// path.
[[nodiscard]] QString writeBusConfiguration(const QString& folder, const QStringList& services);

}  // namespace tralio
